"""The pages and the machinery of the demonstration host."""
