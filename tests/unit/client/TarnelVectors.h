#pragma once

#include <vector>

#include "orvane/tarnel/Answer.h"
#include "orvane/tarnel/Client.h"
#include "orvane/tarnel/Definitions.h"
#include "support/WireVectors.h"

// The statements of Tarnel's vectors, in the library's terms.

orvane::tarnel::Definitions definitionsOf(const std::vector<WireWords>& meaning);
std::vector<orvane::tarnel::Item> itemsOf(const std::vector<WireWords>& meaning);

// Whether the answer says what the step does.
void expectOutputs(const orvane::tarnel::Answer& answer,
                   const orvane::tarnel::Definitions& definitions, const WireStep& step);
