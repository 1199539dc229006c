#pragma once

#include "core/DoorMessage.h"

#include <QString>

#include <cstdio>
#include <optional>

// A second start's end of the socket: hands the request to the running program and prints its
// answer. Needs no application object, so that a start that only hands over stays light.
namespace InstanceClient {

// The status the running program answered with, once its answer is printed to `out` and `err`;
// none when no program listens in `folder` (or the socket there is not the user's own).
std::optional<int> handOver(const QString& folder, const DoorMessage::Request& request, FILE* out, FILE* err);

} // namespace InstanceClient
