#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "bench/BenchWorld.h"
#include "protocols/tarnel/TarnelProtocol.h"
#include "support/TarnelMessages.h"

// A client without outputs. Its data messages have an item for each of its inputs.
class DataMessageCase {
protected:
    // Each record becomes an action of its own.
    void define(std::vector<InputRecord> records) {
        for (std::size_t i = 0; i < records.size(); ++i) {
            records[i].action = static_cast<std::int32_t>(kFirstAction + i);
        }
        Bytes message = definitionsMessage(records, {});
        feed(message);
    }

    template <typename ValueOf>
    Bytes messageOf(std::size_t count, ValueOf valueOf) {
        std::vector<std::pair<std::uint32_t, std::int32_t>> items;
        for (std::size_t i = 0; i < count; ++i) {
            items.emplace_back(kFirstAction + i, valueOf(i));
        }
        return dataMessage(items);
    }

    void feed(Bytes& message) {
        world.Receive(message);
        protocol.Feed(&world.in, &world.out);
    }

    BenchWorld world;

private:
    // Above the identifiers of actions that run their command twice.
    static constexpr std::uint32_t kFirstAction = 10'000;

    TarnelProtocol protocol{&world.simState, &world.logger, &world.utilities, &world.provider,
                            &world.observer};
};
