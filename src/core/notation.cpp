// Placeholder until move notation lands.
