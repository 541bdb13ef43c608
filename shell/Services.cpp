// Anchor for the shell services library; the services live in their own files.
