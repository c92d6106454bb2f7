// Conversion of a model description to a record.
#pragma once

#include <quay/zero/model.h>

#include <string>
#include <vector>

#include "description.h"

namespace modelref::fmi {

struct NotPlaced {
    std::string name;
    std::string reason;
};

/// The result of a conversion. Every variable is counted as recorded or listed as not placed.
struct Record {
    std::size_t recorded = 0;
    std::vector<NotPlaced> notPlaced;
    std::vector<std::string> warnings;
};

/// Creates the record of a description in the model with a single builder.
Record makeRecord(quay::zero::Model const& model, Description const& description);

}  // namespace modelref::fmi
