#pragma once

#include <QColor>
#include <QString>
#include <QStringList>

#include <optional>

// Every message and question of the program goes through here: a message with an OK button, a
// question with Yes and No, both titled AppTitle, and the colour choice. A window backend shows
// them; tests queue answers and read back what was shown instead.
class DialogService
{
public:
    enum class Answer { Yes, No };

    // A file the user chose, and which of the kinds of file offered (the filters) was chosen.
    struct FileChoice
    {
        QString path;
        int filter = 0;
    };

    // What the chosen file is for: read, written (a file there is replaced, after a question), or
    // shared (a file there is joined, not replaced: no question).
    enum class FileUse { Open, Save, Share };

    class Backend
    {
    public:
        virtual ~Backend() = default;
        virtual void showMessage(const QString& title, const QString& text) = 0;
        virtual Answer askQuestion(const QString& title, const QString& text) = 0;
        // Cancel gives no colour.
        virtual std::optional<QColor> chooseColor(const QString& title, const QColor& initial) = 0;
        // Cancel gives no file and no item. A backend that cannot show them gives none.
        virtual std::optional<FileChoice> chooseFile(const QString&, const QString&, const QStringList&, FileUse)
        {
            return std::nullopt;
        }
        virtual std::optional<int> chooseItem(const QString&, const QString&, const QStringList&)
        {
            return std::nullopt;
        }
    };

    // Shows `text` with an OK button, titled AppTitle.
    static void message(const QString& text);
    // Asks `text` with Yes and No, titled AppTitle; true for Yes.
    static bool question(const QString& text);
    // The colour dialog "Select Color", starting from `initial`.
    static std::optional<QColor> chooseColor(const QColor& initial);

    // The file dialog: `filters` are the kinds of file offered ("HTML bookmarks (*.html *.htm)"),
    // `start` the folder, or the file name suggested when saving.
    static std::optional<FileChoice> openFile(const QString& caption, const QString& start, const QStringList& filters);
    static std::optional<FileChoice> saveFile(const QString& caption, const QString& start, const QStringList& filters);
    // A file to write that may be there already and is kept (a file shared with other machines).
    static std::optional<FileChoice> shareFile(const QString& caption, const QString& start, const QStringList& filters);
    // One of `items`, chosen from a list headed `label`; its index.
    static std::optional<int> chooseItem(const QString& caption, const QString& label, const QStringList& items);

    // The backend that shows dialogs; none (the default) answers No and Cancel without showing.
    // The service does not own it.
    static void setBackend(Backend* backend);

    // Test hooks: queued answers are used before the backend is asked; everything shown is kept.
    static void setNextAnswer(Answer answer);
    static void setNextColor(std::optional<QColor> color);
    static void setNextFile(std::optional<FileChoice> file);
    static void setNextItem(std::optional<int> item);
    // The captions of the file dialogs and the items of the last list offered.
    static QStringList fileCaptions();
    static QStringList offeredItems();
    static QStringList shownTexts();
    static QStringList shownTitles();
    static void clearShown();
    static void reset();
};
