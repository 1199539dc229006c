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

    class Backend
    {
    public:
        virtual ~Backend() = default;
        virtual void showMessage(const QString& title, const QString& text) = 0;
        virtual Answer askQuestion(const QString& title, const QString& text) = 0;
        // Cancel gives no colour.
        virtual std::optional<QColor> chooseColor(const QString& title, const QColor& initial) = 0;
    };

    // Shows `text` with an OK button, titled AppTitle.
    static void message(const QString& text);
    // Asks `text` with Yes and No, titled AppTitle; true for Yes.
    static bool question(const QString& text);
    // The colour dialog "Select Color", starting from `initial`.
    static std::optional<QColor> chooseColor(const QColor& initial);

    // The backend that shows dialogs; none (the default) answers No and Cancel without showing.
    // The service does not own it.
    static void setBackend(Backend* backend);

    // Test hooks: queued answers are used before the backend is asked; everything shown is kept.
    static void setNextAnswer(Answer answer);
    static void setNextColor(std::optional<QColor> color);
    static QStringList shownTexts();
    static QStringList shownTitles();
    static void clearShown();
    static void reset();
};
