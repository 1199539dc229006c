#include "SharedTreeTab.h"

#include "GradientButton.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

SharedTreeTab::SharedTreeTab(QWidget* parent) : QWidget(parent)
{
    m_commands = new QWidget(this);
    m_commandLayout = new QHBoxLayout(m_commands);
    m_commandLayout->setContentsMargins(0, 0, 0, 0);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(3, 3, 3, 3);
    layout->addStretch(1); // the tree panel lies over this part
    layout->addWidget(m_commands);
}

void SharedTreeTab::setUpper(QWidget* upper)
{
    m_upper = upper;
    upper->setParent(this);
    static_cast<QVBoxLayout*>(layout())->insertWidget(0, upper);
}

void SharedTreeTab::addCommand(GradientButton* command)
{
    command->setParent(m_commands);
    m_commandLayout->addWidget(command);
}

void SharedTreeTab::fitAround(int upperHeight, int commandHeight)
{
    if (m_upper)
        m_upper->setFixedHeight(std::max(40, upperHeight));
    m_commands->setFixedHeight(std::clamp(commandHeight, 18, 28));
}
