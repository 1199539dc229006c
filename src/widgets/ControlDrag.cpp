#include "ControlDrag.h"

#include <QDrag>
#include <QMimeData>
#include <QWidget>

namespace ControlDrag {

namespace {
std::function<void(QWidget*, const QMimeData&)>& testHook()
{
    static std::function<void(QWidget*, const QMimeData&)> hook;
    return hook;
}
} // namespace

QString mimeType()
{
    return QStringLiteral("application/x-vantrel-control-tag");
}

QString sourceTag(const QMimeData* data)
{
    if (!data || !data->hasFormat(mimeType()))
        return QString();
    return QString::fromUtf8(data->data(mimeType()));
}

QMimeData* makeData(const QString& tag)
{
    auto* data = new QMimeData;
    data->setData(mimeType(), tag.toUtf8());
    return data;
}

void start(QWidget* source, const QString& tag)
{
    QMimeData* data = makeData(tag);
    if (testHook()) {
        testHook()(source, *data);
        delete data;
        return;
    }
    auto* drag = new QDrag(source);
    drag->setMimeData(data);
    drag->setPixmap(source->grab().scaledToHeight(std::min(source->height(), 32), Qt::SmoothTransformation));
    drag->exec(Qt::CopyAction | Qt::LinkAction, Qt::CopyAction);
}

void setTestHook(std::function<void(QWidget*, const QMimeData&)> hook)
{
    testHook() = std::move(hook);
}

} // namespace ControlDrag
