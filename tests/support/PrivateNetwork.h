#pragma once

// Gives this process, and what it starts, a network with nothing but a loopback device, so that the
// plugin's fixed port is free whatever else runs on the machine. Where the system does not permit
// that, waits until no other test holds the port instead.
void enterPrivateNetwork();
