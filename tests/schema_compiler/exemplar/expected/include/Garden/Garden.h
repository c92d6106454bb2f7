// Generated from package.yaml. Changes belong there.
#pragma once

// All types of the Garden schema, and its meta package.
#include "Garden/Bed.h"
#include "Garden/Enumerations.h"
#include "Garden/Frame.h"
#include "Garden/Handles.h"
#include "Garden/MetaPackageGarden.h"
#include "Garden/Plant.h"
#include "Garden/RaisedBed.h"
#include "Garden/Stake.h"
#include "Garden/Support.h"
