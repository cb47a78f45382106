"""What both styles of client share, without input or output: bytes in, events out."""
