"""What both styles of client share, without I/O: bytes in, events out."""
