#include "DialogService.h"

#include "Globals.h"

#include <QQueue>

namespace {

struct State
{
    DialogService::Backend* backend = nullptr;
    QQueue<DialogService::Answer> answers;
    QQueue<std::optional<QColor>> colors;
    QStringList texts;
    QStringList titles;
};

State& state()
{
    static State s;
    return s;
}

void record(const QString& title, const QString& text)
{
    state().titles.append(title);
    state().texts.append(text);
}

} // namespace

void DialogService::message(const QString& text)
{
    const QString title = globals().AppTitle;
    record(title, text);
    if (!state().answers.isEmpty()) {
        state().answers.dequeue(); // a queued answer stands for pressing OK
        return;
    }
    if (state().backend)
        state().backend->showMessage(title, text);
}

bool DialogService::question(const QString& text)
{
    const QString title = globals().AppTitle;
    record(title, text);
    if (!state().answers.isEmpty())
        return state().answers.dequeue() == Answer::Yes;
    if (state().backend)
        return state().backend->askQuestion(title, text) == Answer::Yes;
    return false;
}

std::optional<QColor> DialogService::chooseColor(const QColor& initial)
{
    const QString title = QStringLiteral("Select Color");
    if (!state().colors.isEmpty())
        return state().colors.dequeue();
    if (state().backend)
        return state().backend->chooseColor(title, initial);
    return std::nullopt;
}

void DialogService::setBackend(Backend* backend)
{
    state().backend = backend;
}

void DialogService::setNextAnswer(Answer answer)
{
    state().answers.enqueue(answer);
}

void DialogService::setNextColor(std::optional<QColor> color)
{
    state().colors.enqueue(color);
}

QStringList DialogService::shownTexts()
{
    return state().texts;
}

QStringList DialogService::shownTitles()
{
    return state().titles;
}

void DialogService::clearShown()
{
    state().texts.clear();
    state().titles.clear();
}

void DialogService::reset()
{
    Backend* backend = state().backend;
    state() = State();
    state().backend = backend;
}
