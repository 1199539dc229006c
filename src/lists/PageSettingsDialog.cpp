#include "PageSettingsDialog.h"

#include "widgets/WindowColors.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace {
// The spin boxes' lowest value stands for "none of its own".
constexpr int kNoSeconds = PageSettings::kMinSeconds - 1;
constexpr int kNoZoom = PageSettings::kMinZoom - 1;
} // namespace

PageSettingsDialog::PageSettingsDialog(const QString& what, const PageSettings& given, int runIntervalSeconds,
                                       QWidget* owner)
    : QWidget(owner, Qt::Dialog), m_interval(runIntervalSeconds)
{
    setObjectName(QStringLiteral("PageSettingsDialog"));
    setWindowTitle(QStringLiteral("Page Settings"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowModality(Qt::WindowModal);

    auto* title = new QLabel(what, this);
    title->setObjectName(QStringLiteral("PageSettingsTitle"));
    title->setWordWrap(true);
    title->setTextFormat(Qt::PlainText);

    m_seconds = new QSpinBox(this);
    m_seconds->setObjectName(QStringLiteral("SecondsSpin"));
    m_seconds->setRange(kNoSeconds, PageSettings::kMaxSeconds);
    m_seconds->setSpecialValueText(QStringLiteral("the run's interval"));
    m_seconds->setSuffix(QStringLiteral(" s"));
    m_seconds->setToolTip(QStringLiteral("How long the page stays before the next one: 5 s to 24 h"));

    m_zoom = new QSpinBox(this);
    m_zoom->setObjectName(QStringLiteral("ZoomSpin"));
    m_zoom->setRange(kNoZoom, PageSettings::kMaxZoom);
    m_zoom->setSpecialValueText(QStringLiteral("as the page comes"));
    m_zoom->setSuffix(QStringLiteral(" %"));
    m_zoom->setSingleStep(10);
    m_zoom->setToolTip(QStringLiteral("The page's zoom, 25 % to 500 %, set before it comes into view"));
    m_fit = new QCheckBox(QStringLiteral("Fit the page's width to the window"), this);
    m_fit->setObjectName(QStringLiteral("FitWidthCheck"));
    m_fit->setToolTip(QStringLiteral("A page wider than its window is zoomed so that it fits, with nothing to scroll sideways"));
    auto* zoomRow = new QHBoxLayout;
    zoomRow->addWidget(m_zoom);
    zoomRow->addWidget(m_fit);

    m_reload = new QComboBox(this);
    m_reload->setObjectName(QStringLiteral("ReloadCombo"));
    m_reload->addItems({QStringLiteral("As the run says"), QStringLiteral("Every"),
                        QStringLiteral("Each time it is shown"), QStringLiteral("Never")});
    m_reload->setToolTip(QStringLiteral("When the page's window is loaded again while the page stays loaded"));
    m_reloadMinutes = new QSpinBox(this);
    m_reloadMinutes->setObjectName(QStringLiteral("ReloadMinutesSpin"));
    m_reloadMinutes->setRange(1, PageSettings::kMaxReloadMinutes);
    m_reloadMinutes->setSuffix(QStringLiteral(" min"));
    auto* reloadRow = new QHBoxLayout;
    reloadRow->addWidget(m_reload);
    reloadRow->addWidget(m_reloadMinutes);

    m_scroll = new QComboBox(this);
    m_scroll->setObjectName(QStringLiteral("ScrollCombo"));
    m_scroll->addItems({QStringLiteral("None"), QStringLiteral("Down slowly over its time"),
                        QStringLiteral("To an anchor or CSS selector")});
    m_target = new QLineEdit(this);
    m_target->setObjectName(QStringLiteral("ScrollTargetEdit"));
    m_target->setPlaceholderText(QStringLiteral("#prices or main .chart"));
    m_target->setMaxLength(PageSettings::kMaxTargetLength);
    m_target->setToolTip(QStringLiteral("The page scrolls to the element with this id, or the first one the "
                                        "CSS selector finds"));

    m_skip = new QCheckBox(QStringLiteral("Skip for now"), this);
    m_skip->setObjectName(QStringLiteral("SkipCheck"));
    m_skip->setToolTip(QStringLiteral("The run passes the page by until this is cleared"));

    m_preview = new QLabel(this);
    m_preview->setObjectName(QStringLiteral("PreviewLabel"));
    m_preview->setWordWrap(true);
    m_preview->setTextFormat(Qt::PlainText);
    m_preview->setMinimumWidth(360);

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Show for"), m_seconds);
    form->addRow(QStringLiteral("Zoom"), zoomRow);
    form->addRow(QStringLiteral("Reload"), reloadRow);
    form->addRow(QStringLiteral("Scroll"), m_scroll);
    form->addRow(QString(), m_target);
    form->addRow(QString(), m_skip);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("OKBtn"));
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("CancelBtn"));
    QPushButton* clear = buttons->addButton(QStringLiteral("Clear"), QDialogButtonBox::ResetRole);
    clear->setObjectName(QStringLiteral("ClearBtn"));
    clear->setToolTip(QStringLiteral("No settings of its own: the page is shown as the run says"));
    connect(clear, &QPushButton::clicked, this, [this] { showSettings(PageSettings()); });
    connect(buttons, &QDialogButtonBox::accepted, this, [this] {
        emit chosen(settings());
        close();
    });
    connect(buttons, &QDialogButtonBox::rejected, this, &QWidget::close);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(title);
    layout->addLayout(form);
    layout->addWidget(m_preview);
    layout->addWidget(buttons);

    for (QSpinBox* spin : {m_seconds, m_zoom, m_reloadMinutes})
        connect(spin, &QSpinBox::valueChanged, this, &PageSettingsDialog::update);
    for (QComboBox* combo : {m_reload, m_scroll})
        connect(combo, &QComboBox::currentIndexChanged, this, &PageSettingsDialog::update);
    for (QCheckBox* box : {m_fit, m_skip})
        connect(box, &QCheckBox::toggled, this, &PageSettingsDialog::update);
    connect(m_target, &QLineEdit::textChanged, this, &PageSettingsDialog::update);
    showSettings(given);
    applyDialogColors(this);
}

PageSettings PageSettingsDialog::settings() const
{
    PageSettings s;
    s.seconds = m_seconds->value() == kNoSeconds ? 0 : m_seconds->value();
    if (m_fit->isChecked())
        s.zoom = PageSettings::kFitWidth;
    else
        s.zoom = m_zoom->value() == kNoZoom ? 0 : m_zoom->value();
    s.reload = PageSettings::Reload(m_reload->currentIndex());
    s.reloadMinutes = m_reloadMinutes->value();
    s.scroll = PageSettings::Scroll(m_scroll->currentIndex());
    s.scrollTarget = m_target->text();
    s.skip = m_skip->isChecked();
    return s.bounded();
}

void PageSettingsDialog::showSettings(const PageSettings& given)
{
    const PageSettings s = given.bounded();
    m_seconds->setValue(s.seconds > 0 ? s.seconds : kNoSeconds);
    m_fit->setChecked(s.zoom == PageSettings::kFitWidth);
    m_zoom->setValue(s.zoom > 0 ? s.zoom : kNoZoom);
    m_reload->setCurrentIndex(int(s.reload));
    m_reloadMinutes->setValue(s.reload == PageSettings::Reload::EveryMinutes ? s.reloadMinutes : 5);
    m_scroll->setCurrentIndex(int(s.scroll));
    m_target->setText(s.scrollTarget);
    m_skip->setChecked(s.skip);
    update();
}

void PageSettingsDialog::update()
{
    m_zoom->setEnabled(!m_fit->isChecked());
    m_reloadMinutes->setEnabled(m_reload->currentIndex() == int(PageSettings::Reload::EveryMinutes));
    m_target->setEnabled(m_scroll->currentIndex() == int(PageSettings::Scroll::ToTarget));
    const PageSettings s = settings();
    QString text;
    if (s.skip) {
        text = QStringLiteral("The run passes this page by.");
    } else {
        const int shown = s.seconds > 0 ? s.seconds : m_interval;
        text = QStringLiteral("Shown for %1 s, then the next page").arg(shown);
        if (s.seconds > 0 && m_interval > 0)
            text += QStringLiteral(" (the run's interval is %1 s)").arg(m_interval);
        text += u'.';
        if (s.scroll == PageSettings::Scroll::Slowly)
            text += QStringLiteral(" It scrolls from top to bottom in those %1 s.").arg(shown);
    }
    if (!s.isEmpty())
        text += QStringLiteral("\nIn short: ") + s.summary() + u'.';
    m_preview->setText(text);
}

void PageSettingsDialog::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        applyDialogColors(this);
    QWidget::changeEvent(event);
}
