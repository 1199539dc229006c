#include "AccessibleControls.h"

#include "ColorSwatch.h"
#include "GradientButton.h"
#include "core/StoredColor.h"

#include <QAccessibleWidget>
#include <QTimer>

QString spokenCaption(const QString& caption)
{
    QString spoken;
    spoken.reserve(caption.size());
    for (qsizetype i = 0; i < caption.size(); ++i) {
        if (caption[i] == u'&' && ++i == caption.size())
            break; // a lone ampersand at the end marks nothing
        spoken += caption[i];
    }
    return spoken;
}

namespace {

class AccessibleGradientButton : public QAccessibleWidget
{
public:
    explicit AccessibleGradientButton(GradientButton* button) : QAccessibleWidget(button, QAccessible::Button) {}

    GradientButton* button() const { return static_cast<GradientButton*>(widget()); }

    QString text(QAccessible::Text t) const override
    {
        if (t == QAccessible::Name) {
            const QString named = button()->accessibleName();
            return named.isEmpty() ? spokenCaption(button()->text()) : named;
        }
        return QAccessibleWidget::text(t);
    }

    QAccessible::State state() const override
    {
        QAccessible::State s = QAccessibleWidget::state();
        if (button()->isTwoState()) {
            s.checkable = true;
            s.checked = button()->value();
        } else {
            // A one-state button pressed in is the current one of its kind (a row's window).
            s.pressed = button()->value();
        }
        return s;
    }

    QStringList actionNames() const override
    {
        if (!button()->isEnabled())
            return {};
        QStringList names{pressAction()};
        if (button()->isTwoState())
            names << toggleAction();
        return names;
    }

    void doAction(const QString& name) override
    {
        // The click comes a moment later, as a person's would: what it opens (a box, a dialog)
        // must not hold the screen reader's call open.
        if (button()->isEnabled() && (name == pressAction() || name == toggleAction()))
            button()->animateClick();
    }

    QStringList keyBindingsForAction(const QString& name) const override
    {
        if (name == pressAction() && button()->focusPolicy() != Qt::NoFocus)
            return {QStringLiteral("Space")};
        return {};
    }
};

class AccessibleColorSwatch : public QAccessibleWidget
{
public:
    explicit AccessibleColorSwatch(ColorSwatch* swatch) : QAccessibleWidget(swatch, QAccessible::Button) {}

    ColorSwatch* swatch() const { return static_cast<ColorSwatch*>(widget()); }

    QString text(QAccessible::Text t) const override
    {
        if (t == QAccessible::Description) {
            const QColor shown = StoredColor::resolve(swatch()->value(), swatch()->palette());
            const QString colour = shown.isValid() ? shown.name(QColor::HexRgb).toUpper() : QStringLiteral("none");
            return QStringLiteral("Now %1. Enter or a double click chooses another colour").arg(colour);
        }
        if (t == QAccessible::Value)
            return {};
        return QAccessibleWidget::text(t);
    }

    QAccessible::State state() const override
    {
        QAccessible::State s = QAccessibleWidget::state();
        s.editable = false;
        s.readOnly = false;
        return s;
    }

    QStringList actionNames() const override { return {pressAction()}; }

    void doAction(const QString& name) override
    {
        if (name != pressAction())
            return;
        QTimer::singleShot(0, swatch(), [s = swatch()] { s->chooseColor(); });
    }

    QStringList keyBindingsForAction(const QString& name) const override
    {
        return name == pressAction() ? QStringList{QStringLiteral("Return")} : QStringList{};
    }
};

// The program's windows are plain widgets, which Qt describes as a filler: the main window is
// a frame, and a window that belongs to another (More Options, the run dialog) a dialog.
bool isOwnWindow(const QString& className, QObject* object)
{
    if (!object->isWidgetType() || className != QLatin1String(object->metaObject()->className()))
        return false;
    auto* widget = static_cast<QWidget*>(object);
    return widget->isWindow() && object->metaObject()->superClass() == &QWidget::staticMetaObject;
}

// A widget whose keyboard stop hands the focus on to another (the tab strip to its tab bar): the
// focus is heard on that other, so the widget itself is only the group around it.
class AccessibleFocusGroup : public QAccessibleWidget
{
public:
    explicit AccessibleFocusGroup(QWidget* widget) : QAccessibleWidget(widget, QAccessible::Grouping) {}

    QAccessible::State state() const override
    {
        QAccessible::State s = QAccessibleWidget::state();
        s.focusable = false;
        s.focused = false;
        return s;
    }
};

QAccessibleInterface* controlsFactory(const QString& className, QObject* object)
{
    if (className == QLatin1String("TabStrip") && object->isWidgetType() &&
        static_cast<QWidget*>(object)->focusProxy())
        return new AccessibleFocusGroup(static_cast<QWidget*>(object));
    if (isOwnWindow(className, object)) {
        auto* window = static_cast<QWidget*>(object);
        return new QAccessibleWidget(window, window->parentWidget() ? QAccessible::Dialog : QAccessible::Window);
    }
    if (className == QLatin1String("GradientButton"))
        if (auto* button = qobject_cast<GradientButton*>(object))
            return new AccessibleGradientButton(button);
    if (className == QLatin1String("ColorSwatch"))
        if (auto* swatch = qobject_cast<ColorSwatch*>(object))
            return new AccessibleColorSwatch(swatch);
    return nullptr;
}

} // namespace

void installAccessibleControls()
{
    static bool installed = false;
    if (installed)
        return;
    installed = true;
    QAccessible::installFactory(controlsFactory);
}
