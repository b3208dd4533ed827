Solution No 1
No more solutions