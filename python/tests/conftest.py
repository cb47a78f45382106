"""The package is tested where it stands, with the plugin for pytest that it would install."""

import signal

pytest_plugins = ["orvane.testing.pytest_plugin"]

# A script starts what runs in its background with SIGINT ignored, which programs inherit; those
# under test are ended by it.
signal.signal(signal.SIGINT, signal.default_int_handler)
