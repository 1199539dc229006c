#include "ControlDrag.h"

#include <QDrag>
#include <QMimeData>
#include <QPainter>
#include <QRadialGradient>
#include <QWidget>

namespace ControlDrag {

namespace {
std::function<void(QWidget*, const QMimeData&)>& testHook()
{
    static std::function<void(QWidget*, const QMimeData&)> hook;
    return hook;
}

QPixmap& lastShown()
{
    static QPixmap picture;
    return picture;
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

void start(QWidget* source, const QString& tag, const QPixmap& picture)
{
    QMimeData* data = makeData(tag);
    lastShown() = picture.isNull()
                      ? source->grab().scaledToHeight(std::min(source->height(), 32), Qt::SmoothTransformation)
                      : picture;
    if (testHook()) {
        testHook()(source, *data);
        delete data;
        return;
    }
    auto* drag = new QDrag(source);
    drag->setMimeData(data);
    drag->setPixmap(lastShown());
    drag->exec(Qt::CopyAction | Qt::LinkAction, Qt::CopyAction);
}

QPixmap pagePicture()
{
    constexpr int kSize = 32;
    QPixmap globe(kSize, kSize);
    globe.fill(Qt::transparent);
    QPainter p(&globe);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF ball(2.5, 2.5, kSize - 5, kSize - 5);
    QRadialGradient sea(ball.center() - QPointF(5, 5), kSize / 1.6);
    sea.setColorAt(0, QColor(0x6f, 0xb7, 0xf2));
    sea.setColorAt(1, QColor(0x1c, 0x5f, 0xb0));
    p.setBrush(sea);
    p.setPen(QPen(QColor(0x12, 0x3f, 0x78), 1.5));
    p.drawEllipse(ball);
    // Meridians and parallels in white.
    p.setBrush(Qt::NoBrush);
    p.setPen(QPen(QColor(255, 255, 255, 200), 1.2));
    p.drawEllipse(QRectF(ball.center().x() - ball.width() / 4, ball.top(), ball.width() / 2, ball.height()));
    p.drawLine(QPointF(ball.center().x(), ball.top()), QPointF(ball.center().x(), ball.bottom()));
    p.drawLine(QPointF(ball.left(), ball.center().y()), QPointF(ball.right(), ball.center().y()));
    const double quarter = ball.height() / 4;
    p.drawLine(QPointF(ball.left() + 3.5, ball.center().y() - quarter), QPointF(ball.right() - 3.5, ball.center().y() - quarter));
    p.drawLine(QPointF(ball.left() + 3.5, ball.center().y() + quarter), QPointF(ball.right() - 3.5, ball.center().y() + quarter));
    return globe;
}

QPixmap lastPicture()
{
    return lastShown();
}

void setTestHook(std::function<void(QWidget*, const QMimeData&)> hook)
{
    testHook() = std::move(hook);
}

} // namespace ControlDrag
