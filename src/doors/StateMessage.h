#pragma once

#include <QByteArray>

class Verbs;

// The state as the broker and the remote page tell it: the command line's state (windows, runs,
// current window) with the lists there are and Vantrel's version, as one JSON object.
namespace StateMessage {

QByteArray json(const Verbs& verbs);

} // namespace StateMessage
