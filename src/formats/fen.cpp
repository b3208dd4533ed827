// Placeholder until the FEN reader lands.
