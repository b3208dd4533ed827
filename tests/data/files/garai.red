  Solution No 1
1. Bc4 - b5 ,  Re4 - e3 
2. Kd3 - c4 ,  Re8 - c8 #
  Solution No 2
1. Re3 - e4 ,  Bb5 - c4 
2. Kd3 - e3 ,  Qa6 - h6 #
No more solutions
