// Placeholder until validation lands.
