Solution No 1
1. Kf8 - e8   threat:  2.  f7 - f8N#
	1...., Rg7 - g8   2.  f7 - g8Q#
	1...., Rg7 - f7   2. Qb7 - f7 #
	1....,  d6 - d5   2. Qb7 - d7 #
	1...., Bf5 - g6   2. Nf3 - g5 #
	1...., Qg4 - h5   2. Qb7 - e4 #
	1...., Ne3 - d5   2. Qb7 - d7 #
No more solutions
