"""The two styles of I/O: each carries out the core's plans."""
