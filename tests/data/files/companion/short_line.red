Solution No 1
1. Qb3 - a3 
abcd
No more solutions
