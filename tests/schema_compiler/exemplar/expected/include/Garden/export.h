// Generated from package.yaml. Changes belong there.
#pragma once

#define GARDEN_API __attribute__((visibility("default")))
