// Placeholder.
