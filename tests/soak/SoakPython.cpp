#include "soak/SoakPython.h"

#include <poll.h>
#include <unistd.h>

#include <stdexcept>

#include "e2e/SimulatorProcess.h"

SoakPython::SoakPython(SimulatorProcess& flownSimulator)
    : simulator(flownSimulator),
      process({"/usr/bin/python3", SOAK_CLIENT, PYTHON_PACKAGE},
              {.input = input.theirs, .output = output.theirs}) {
    ::close(input.theirs);
    ::close(output.theirs);
}

SoakPython::~SoakPython() {
    ::close(input.ours);
    ::close(output.ours);
}

void SoakPython::Play(std::size_t round) {
    const std::string order = std::to_string(round) + "\n";
    if (::write(input.ours, order.data(), order.size()) != static_cast<ssize_t>(order.size())) {
        throw std::runtime_error("the Python client takes no more orders");
    }
    while (!hasAnswered()) {
        simulator.Step();
    }
    const std::string answer = takeLine();
    if (answer != "ok\n") {
        throw std::runtime_error("the Python client says: " + answer);
    }
}

bool SoakPython::hasAnswered() const {
    pollfd state{output.ours, POLLIN, 0};
    return ::poll(&state, 1, 0) == 1;
}

// Empty after its end. A line is written at once, and short.
std::string SoakPython::takeLine() const {
    std::string line(512, '\0');
    const ssize_t count = ::read(output.ours, line.data(), line.size());
    line.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return line;
}
