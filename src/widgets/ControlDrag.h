#pragma once

#include <QPixmap>
#include <QString>

#include <functional>

class QMimeData;
class QWidget;

// A drag of one of the program's own controls onto another: the drop side reads the source's tag
// ("AddBtn", "SSTree3", ...) and takes the page from CurrentUrl and CurrentTitle, which the source
// set before the drag began.
namespace ControlDrag {

// The private type that carries the source's tag.
QString mimeType();

// The source tag of dropped data; "" when the data is no drag of the program's controls.
QString sourceTag(const QMimeData* data);

// Data that carries `tag`, as a drag of the program's controls does.
QMimeData* makeData(const QString& tag);

// Drags `source` with its tag until the user drops it or gives up. The drag shows `picture`
// under the pointer, or a small picture of the source when none is given.
void start(QWidget* source, const QString& tag, const QPixmap& picture = QPixmap());

// The picture of a web page on the move: a globe.
QPixmap pagePicture();

// The picture that the last drag showed (for tests).
QPixmap lastPicture();

// Tests take the data in place of a real drag, which would wait for the mouse.
void setTestHook(std::function<void(QWidget* source, const QMimeData& data)> hook);

} // namespace ControlDrag
