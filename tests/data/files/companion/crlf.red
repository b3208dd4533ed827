Solution No 1
1. Qb3 - a3 
	1....,  h7 - h6   2. Qa3 - c3 
No more solutions
