#include "About1.h"

#include "SystemInfo.h"
#include "widgets/WindowColors.h"
#include "verbs/Verbs.h"
#include "verbs/WebForm1.h"
#include "core/Globals.h"
#include "widgets/GradientButton.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QVBoxLayout>

namespace {
const QString kMaker = QStringLiteral("Quorlan Software");
}

About1::About1(QWidget* owner, Verbs* verbs) : QWidget(owner, Qt::Dialog), m_verbs(verbs)
{
    setObjectName(QStringLiteral("About1"));
    setWindowTitle(QStringLiteral("About Vantrel"));

    m_icon = new QLabel(this);
    m_icon->setObjectName(QStringLiteral("picIcon"));
    m_icon->setPixmap(QPixmap(QStringLiteral(":/icons/vantrel-64.png")));
    m_icon->setAccessibleName(QStringLiteral("Vantrel"));

    auto* frame = new QFrame(this);
    frame->setObjectName(QStringLiteral("Frame1"));
    auto* title =
        new QLabel(QStringLiteral("<b>Vantrel</b> %1").arg(QApplication::applicationVersion()), frame);
    auto* purpose =
        new QLabel(tr("Runs up to eight web-browser windows at once and organises your favourite pages: "
                      "Favorites with quick buttons, favourite lists run on a timer, and the history of "
                      "every window."),
                   frame);
    purpose->setWordWrap(true);
    m_maker = new QLabel(QStringLiteral("<a href=\"maker\">%1</a>").arg(kMaker), frame);
    m_maker->setObjectName(QStringLiteral("Label1"));
    m_maker->setToolTip(tr("Open the maker's web site"));
    m_maker->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    m_maker->setFocusPolicy(Qt::StrongFocus);
    connect(m_maker, &QLabel::linkActivated, this, &About1::Label1_Click);
    auto* frameLayout = new QVBoxLayout(frame);
    frameLayout->addWidget(title);
    frameLayout->addWidget(purpose);
    frameLayout->addWidget(m_maker);

    m_sysBtn = new GradientButton(QStringLiteral("SysBtn"), tr("System Info..."), this);
    m_sysBtn->setToolTip(tr("Show information about this computer"));
    m_okBtn = new GradientButton(QStringLiteral("OKBtn"), tr("OK"), this);
    m_okBtn->setToolTip(tr("Close the about box"));
    m_okBtn->setDefault(true);
    for (GradientButton* b : {m_sysBtn, m_okBtn})
        b->setMinimumSize(110, 26);
    connect(m_sysBtn, &GradientButton::clicked, this, [] { SystemInfo::StartSysInfo(); });
    connect(m_okBtn, &GradientButton::clicked, this, &About1::close);

    auto* top = new QHBoxLayout;
    top->addWidget(m_icon, 0, Qt::AlignTop);
    top->addWidget(frame, 1);
    auto* buttons = new QVBoxLayout;
    buttons->addWidget(m_okBtn);
    buttons->addWidget(m_sysBtn);
    buttons->addStretch();
    top->addLayout(buttons);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    resize(480, 180);
}

void About1::Form_Load()
{
    globals().AboutShown = true;
}

void About1::Label1_Click()
{
    Globals& g = globals();
    g.CurrentUrl = QString::fromLatin1(kDefaultStartUrl); // the maker's site
    g.CurrentTitle = kMaker;
    // Below eight windows the site gets a window of its own; with eight it takes the current one
    // at once, without the question of the ninth window.
    if (g.WindowCount < kWindowSlots) {
        m_verbs->NewBtnAction(true);
        return;
    }
    const int slot = g.WindowIndex < 1 || g.WindowIndex > kWindowSlots ? kWindowSlots : g.WindowIndex;
    m_verbs->openPage(g.CurrentUrl, g.CurrentTitle, OpenWhere::Slot, slot);
}

void About1::closeEvent(QCloseEvent* event)
{
    globals().AboutShown = false;
    event->accept();
}

void About1::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        applyDialogColors(this);
    QWidget::changeEvent(event);
}
