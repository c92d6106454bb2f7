// A model description as a record.
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

/// Every variable is either recorded or not placed.
struct Record {
    std::size_t recorded = 0;
    std::vector<NotPlaced> notPlaced;
    std::vector<std::string> warnings;
};

/// Makes the record of a description in the model, in one run of a builder.
Record makeRecord(quay::zero::Model const& model, Description const& description);

}  // namespace modelref::fmi
