"""The package is tested where it stands, with the plugin for pytest that it would install."""

pytest_plugins = ["orvane.testing.pytest_plugin"]
