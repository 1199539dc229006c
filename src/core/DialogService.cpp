#include "DialogService.h"

#include "Globals.h"

#include <QQueue>

namespace {

struct State
{
    DialogService::Backend* backend = nullptr;
    QQueue<DialogService::Answer> answers;
    QQueue<std::optional<QColor>> colors;
    QQueue<std::optional<DialogService::FileChoice>> files;
    QQueue<std::optional<int>> items;
    QStringList fileCaptions;
    QStringList offered;
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

namespace {

std::optional<DialogService::FileChoice> chooseFile(const QString& caption, const QString& start,
                                                    const QStringList& filters, DialogService::FileUse use)
{
    state().fileCaptions.append(caption);
    if (!state().files.isEmpty())
        return state().files.dequeue();
    if (state().backend)
        return state().backend->chooseFile(caption, start, filters, use);
    return std::nullopt;
}

} // namespace

std::optional<DialogService::FileChoice> DialogService::openFile(const QString& caption, const QString& start,
                                                                 const QStringList& filters)
{
    return chooseFile(caption, start, filters, FileUse::Open);
}

std::optional<DialogService::FileChoice> DialogService::saveFile(const QString& caption, const QString& start,
                                                                 const QStringList& filters)
{
    return chooseFile(caption, start, filters, FileUse::Save);
}

std::optional<DialogService::FileChoice> DialogService::shareFile(const QString& caption, const QString& start,
                                                                  const QStringList& filters)
{
    return chooseFile(caption, start, filters, FileUse::Share);
}

std::optional<int> DialogService::chooseItem(const QString& caption, const QString& label, const QStringList& items)
{
    state().offered = items;
    if (!state().items.isEmpty())
        return state().items.dequeue();
    if (state().backend)
        return state().backend->chooseItem(caption, label, items);
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

void DialogService::setNextFile(std::optional<FileChoice> file)
{
    state().files.enqueue(std::move(file));
}

void DialogService::setNextItem(std::optional<int> item)
{
    state().items.enqueue(item);
}

QStringList DialogService::fileCaptions()
{
    return state().fileCaptions;
}

QStringList DialogService::offeredItems()
{
    return state().offered;
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
    state().fileCaptions.clear();
    state().offered.clear();
}

void DialogService::reset()
{
    Backend* backend = state().backend;
    state() = State();
    state().backend = backend;
}
