#include "OptionsPanel.h"

#include "MoreOptions.h"
#include "core/ColorsFile.h"
#include "core/DialogService.h"
#include "core/Globals.h"
#include "core/OptionsFile.h"
#include "core/RunError.h"
#include "widgets/ColorSwatch.h"
#include "widgets/GradientButton.h"
#include "widgets/Twips.h"
#include "widgets/WindowPlacement.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace {

const QString kStartUpListTip = QStringLiteral("Use List to Load Internet Explorer Windows on Startup");

struct SwatchRow
{
    const char* label;
    int swatches[3]; // -1 where the row has no end colour
};

// The swatches in their grid: background start, text, end colour of each group.
constexpr SwatchRow kSwatchRows[] = {
    {"Select Window Colors:", {0, 4, 8}},
    {"Select Tab Colors:", {1, 5, -1}},
    {"Select List Colors:", {2, 6, -1}},
    {"Select Button Colors:", {3, 7, 9}},
};

// The swatch of each colour, in the order of the colours file: window back, text, end; tab back,
// text; list back, text; button back, text, end.
constexpr size_t kSwatchOfColor[10] = {0, 4, 8, 1, 5, 2, 6, 3, 7, 9};

const char* const kSwatchTips[10] = {
    "Set  Window Background Color",
    "Set Tab Background Color",
    "Set List Background Color",
    "Set Button Background Color",
    "Set Window Text Color",
    "Set Tab Text Color",
    "Set List Text Color",
    "Set Button Text Color",
    "Set  Window End Gradient Background Color",
    "Set Button End Gradient Background Color",
};

const char* const kStyleCaptions[5] = {"Flat", "Raised Light", "Lowered Light", "Raised Heavy",
                                       "Lowered Heavy"};
const char* const kStyleTips[5] = {"Flat Text", "Text slightly Raised", "Text slightly Lowered",
                                   "Text heavily Raised", "Text Heavily Lowered"};

QCheckBox* checkBox(const char* name, const char* caption, const QString& tip, QWidget* parent)
{
    auto* box = new QCheckBox(QString::fromLatin1(caption), parent);
    box->setObjectName(QString::fromLatin1(name));
    box->setToolTip(tip);
    return box;
}

void showError(const RunError& error)
{
    DialogService::message(QStringLiteral("Error - ") + error.numberAndText());
}

} // namespace

OptionsPanel::OptionsPanel()
{
    setObjectName(QStringLiteral("OptionsPanel"));
    m_frame = new QGroupBox(QStringLiteral(" Program Options "));
    m_frame->setObjectName(QStringLiteral("Frame6"));
    m_frame->setAccessibleName(tr("Program Options"));
    auto* column = new QVBoxLayout(m_frame);
    column->setSpacing(3);

    // The addresses each under their label: the window is narrow.
    const char* addressLabels[2] = {"StartUp URL:", "New Explorer URL:"};
    const char* addressTips[2] = {"URL to load when starting Vantrel", "URL to load when clicking New Explorer Button"};
    for (int i = 0; i < 2; ++i) {
        m_text2[size_t(i)] = new QLineEdit(m_frame);
        m_text2[size_t(i)]->setObjectName(QStringLiteral("Text2_%1").arg(i));
        m_text2[size_t(i)]->setToolTip(QString::fromLatin1(addressTips[i]));
        auto* label = new QLabel(QString::fromLatin1(addressLabels[i]), m_frame);
        label->setBuddy(m_text2[size_t(i)]);
        column->addWidget(label);
        column->addWidget(m_text2[size_t(i)]);
    }
    m_cmbList = new QComboBox(m_frame);
    m_cmbList->setObjectName(QStringLiteral("CMBLIST"));
    m_cmbList->setToolTip(QStringLiteral("Select Favorite List to run at Startup."));
    auto* listLabel = new QLabel(QStringLiteral("StartUp List:"), m_frame);
    listLabel->setBuddy(m_cmbList);
    auto* listRow = new QHBoxLayout;
    listRow->addWidget(listLabel);
    listRow->addWidget(m_cmbList, 1);
    column->addLayout(listRow);

    m_chkStartUrl = checkBox("CHKSTARTURL", "Use StartUp URL", QStringLiteral("Use Startup URL instead of List"), m_frame);
    m_chkList = checkBox("CHKLIST", "Use StartUp List", kStartUpListTip, m_frame);
    // The theater and on-top boxes share the start-up list's tool tip; it has always been so.
    m_chkTheater = checkBox("CHKTHEATER", "Display Internet Explorer in Theater View", kStartUpListTip, m_frame);
    m_chkTop = checkBox("CHKTOP", "Keep Vantrel Window on Top of Screen", kStartUpListTip, m_frame);
    m_chkBold = checkBox("CHKBOLD", "Use Bold Text Type", QStringLiteral("Use Bold Text where available"), m_frame);
    for (QCheckBox* box : {m_chkStartUrl, m_chkList, m_chkTheater, m_chkTop, m_chkBold})
        column->addWidget(box);

    auto* fontFrame = new QGroupBox(QStringLiteral(" Font Type "), m_frame);
    fontFrame->setObjectName(QStringLiteral("SSFrame1"));
    fontFrame->setAccessibleName(tr("Font Type"));
    auto* fontGrid = new QGridLayout(fontFrame);
    fontGrid->setVerticalSpacing(0);
    for (int i = 0; i < 5; ++i) {
        auto* button = new QRadioButton(QString::fromLatin1(kStyleCaptions[i]), fontFrame);
        button->setObjectName(QStringLiteral("RDTYPE_%1").arg(i));
        button->setToolTip(QString::fromLatin1(kStyleTips[i]));
        m_rdType[size_t(i)] = button;
        // Flat alone, then the raised and the lowered styles side by side.
        fontGrid->addWidget(button, (i + 1) / 2, i == 0 ? 0 : (i + 1) % 2);
    }
    column->addWidget(fontFrame);

    auto* heading = new QLabel(QStringLiteral("Back Start / Text / End Color"), m_frame);
    heading->setObjectName(QStringLiteral("Label1"));
    heading->setAlignment(Qt::AlignRight);
    column->addWidget(heading);
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(4);
    grid->setVerticalSpacing(3);
    for (int i = 0; i < 10; ++i) {
        m_text1[size_t(i)] = new ColorSwatch(QStringLiteral("Text1_%1").arg(i), QString::fromLatin1(kSwatchTips[i]), m_frame);
        m_text1[size_t(i)]->setFixedWidth(34);
    }
    int row = 0;
    for (const SwatchRow& swatchRow : kSwatchRows) {
        grid->addWidget(new QLabel(QString::fromLatin1(swatchRow.label), m_frame), row, 0);
        for (int c = 0; c < 3; ++c)
            if (swatchRow.swatches[c] >= 0)
                grid->addWidget(m_text1[size_t(swatchRow.swatches[c])], row, 1 + c);
        ++row;
    }
    grid->setColumnStretch(0, 1);
    column->addLayout(grid);

    column->addStretch(1);

    // Apply, Help and About stay in view below the options, which scroll when the tab is too small
    // for them, in either direction.
    m_commands = new QWidget(this);
    m_commands->setObjectName(QStringLiteral("OptionsCommands"));
    m_apply = new GradientButton(QStringLiteral("WinOptnBtn"), QStringLiteral("Apply"), m_commands);
    m_apply->setToolTip(QStringLiteral("Set Program Window Options"));
    m_help = new GradientButton(QStringLiteral("HelpBtn"), QStringLiteral("Help"), m_commands);
    m_help->setToolTip(QStringLiteral("Help with Program Options"));
    m_about = new GradientButton(QStringLiteral("AboutBtn"), QStringLiteral("About"), m_commands);
    m_about->setToolTip(QStringLiteral("About Vantrel"));
    m_more = new GradientButton(QStringLiteral("MoreOptionsBtn"), QStringLiteral("More..."), m_commands);
    m_more->setToolTip(QStringLiteral("More Options: timed browsing left alone, recovery, the log"));
    auto* buttons = new QHBoxLayout(m_commands);
    buttons->setContentsMargins(6, 4, 6, 4);
    for (GradientButton* button : {m_apply, m_more, m_help, m_about}) {
        button->setMinimumHeight(24);
        button->setMinimumWidth(10);
        button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        buttons->addWidget(button);
    }

    auto* scroll = new QScrollArea(this);
    scroll->setObjectName(QStringLiteral("OptionsScroll"));
    scroll->setWidget(m_frame);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    // The keyboard goes from control to control and the area follows it; a stop on the area itself
    // would be a nameless one.
    scroll->setFocusPolicy(Qt::NoFocus);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(scroll, 1);
    layout->addWidget(m_commands);

    connect(m_apply, &GradientButton::clicked, this, &OptionsPanel::WinOptnBtn_Click);
    connect(m_help, &GradientButton::clicked, this, &OptionsPanel::helpRequested);
    connect(m_about, &GradientButton::clicked, this, &OptionsPanel::aboutRequested);
    connect(m_more, &GradientButton::clicked, this, &OptionsPanel::MoreOptionsBtn_Click);
}

void OptionsPanel::ShowOptionControls()
{
    const Globals& g = globals();
    const std::pair<QCheckBox*, bool> boxes[] = {{m_chkBold, g.OptBold},
                                                 {m_chkList, g.OptStartList},
                                                 {m_chkStartUrl, g.OptStartUrl},
                                                 {m_chkTheater, g.OptTheater},
                                                 {m_chkTop, g.OptOnTop}};
    for (const auto& [box, on] : boxes) {
        box->setChecked(false);
        box->setChecked(on);
    }
    for (int i = 0; i < 5; ++i)
        if (i == g.FontType)
            m_rdType[size_t(i)]->setChecked(true);
    m_text2[0]->setText(g.StartUrl);
    m_text2[1]->setText(g.NewWindowUrl);
    if (m_cmbList->count() > 0 && g.StartListIndex >= 0) {
        if (g.StartListIndex >= m_cmbList->count()) {
            showError(RunError::InvalidPropertyValue); // the list named at start is gone
            return;
        }
        m_cmbList->setCurrentIndex(g.StartListIndex);
    } else if (g.StartListIndex < 0) {
        m_cmbList->setCurrentIndex(-1); // no start-up list chosen
    }
}

void OptionsPanel::ReadOptionControls()
{
    Globals& g = globals();
    // A little grow and shrink makes the window lay itself out anew.
    const int oneStep = std::max(1, twipsToPixels(15));
    QWidget* main = window();
    main->resize(main->width(), main->height() + oneStep);
    main->resize(main->width(), main->height() - oneStep);

    g.OptBold = m_chkBold->isChecked();
    g.OptStartUrl = m_chkStartUrl->isChecked();
    g.OptStartList = m_chkList->isChecked();
    g.OptTheater = m_chkTheater->isChecked();
    g.OptOnTop = m_chkTop->isChecked();
    for (int i = 0; i < 5; ++i)
        if (m_rdType[size_t(i)]->isChecked())
            g.FontType = i;
    // An emptied box leaves the address in force.
    if (!m_text2[0]->text().isEmpty())
        g.StartUrl = m_text2[0]->text().trimmed();
    if (!m_text2[1]->text().isEmpty())
        g.NewWindowUrl = m_text2[1]->text().trimmed();
    g.StartListIndex = m_cmbList->currentIndex();
}

MoreOptions* OptionsPanel::moreOptions() const
{
    return m_moreOptions;
}

void OptionsPanel::MoreOptionsBtn_Click()
{
    if (!m_moreOptions) {
        m_moreOptions = new MoreOptions(window());
        connect(m_moreOptions, &MoreOptions::applied, this, &OptionsPanel::moreOptionsApplied);
        connect(m_moreOptions, &MoreOptions::schedulesRequested, this, &OptionsPanel::schedulesRequested);
        connect(m_moreOptions, &MoreOptions::screensRequested, this, &OptionsPanel::screensRequested);
        connect(m_moreOptions, &MoreOptions::mqttRequested, this, &OptionsPanel::mqttRequested);
        connect(m_moreOptions, &MoreOptions::remotePageRequested, this, &OptionsPanel::remotePageRequested);
    }
    m_moreOptions->showSettings();
    keepAboveOwner(m_moreOptions, window());
    m_moreOptions->show();
    keepOnScreen(m_moreOptions);
    m_moreOptions->raise();
    m_moreOptions->activateWindow();
}

void OptionsPanel::ShowColorControls()
{
    const auto colors = globals().colors();
    for (size_t i = 0; i < colors.size(); ++i)
        m_text1[kSwatchOfColor[i]]->setValue(*colors[i]);
}

void OptionsPanel::ReadColorControls()
{
    const auto colors = globals().colors();
    for (size_t i = 0; i < colors.size(); ++i)
        *colors[i] = m_text1[kSwatchOfColor[i]]->value();
}

void OptionsPanel::WinOptnBtn_Click()
{
    ReadColorControls();
    SaveColors();
    ReadOptionControls();
    SaveOptions();
    emit colorsApplied();
}
