"""See the package."""


class FuncAnimation:
    """A window that nobody opens here."""
