"""The two styles of input and output: each carries out the core's plans."""
