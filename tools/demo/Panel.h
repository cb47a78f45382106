#pragma once

#include "tools/demo/TarnelWire.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace demo {

// A control that the demo moves by the clock.
struct Control {
    InputRecord record{};
    std::int32_t (*positionAt)(double seconds) = nullptr;
    std::int32_t rest = 0;
};

// One line of the panel: a control, the output in which its effect shows, or both.
struct PanelRow {
    std::string name{};
    // How the value reaches the simulator, in a few words.
    std::string way{};
    std::optional<Control> control{};
    std::optional<OutputRecord> output{};
};

// What the demo declares to the server: each way of scaling an axis, switches, array elements,
// commands, and outputs of every type.
class Panel final {
public:
    Panel();

    const std::vector<PanelRow>& Rows() const { return rows; }

    // In the order of the rows.
    std::vector<InputRecord> Inputs() const;
    std::vector<OutputRecord> Outputs() const;

    std::vector<DataItem> PositionsAt(double seconds) const;
    // Sticks centred and buttons released.
    std::vector<DataItem> RestPositions() const;

private:
    void addAxes();
    void addSwitches();
    void addCommands();
    void addGauges();
    // Gives identifiers to the control and the output.
    void add(PanelRow row);

    std::vector<PanelRow> rows;
};

} // namespace demo
