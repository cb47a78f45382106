#pragma once

// Gives this process and its children a network with only a loopback device, so that the plugin's
// fixed port is free. If the system does not permit that, waits until no other test holds the port.
void enterPrivateNetwork();

// Whether that has worked: nothing that is sent leaves this process and its children.
bool isNetworkPrivate();
