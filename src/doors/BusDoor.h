#pragma once

#include "DoorCommands.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QPointer>
#include <QVariantMap>

#include <optional>

class Verbs;

// Vantrel on the user's session bus: org.vantrel.Vantrel at /org/vantrel/Vantrel, its interface
// described by doors/org.vantrel.Vantrel.xml (the adaptor is generated from it). Each method is a
// command line's request carried out through the same verbs; a refusal is a D-Bus error with the
// reason in words. The state is there as properties, with PropertiesChanged at each change, and a
// signal tells each page shown. The same object answers org.freedesktop.Application, so that the
// desktop can start Vantrel on demand and hand it files and the launcher's actions.
class BusDoor : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_PROPERTY(QString State READ State)
    Q_PROPERTY(int CurrentWindow READ CurrentWindow)
    Q_PROPERTY(int WindowCount READ WindowCount)
    Q_PROPERTY(bool Running READ Running)
    Q_PROPERTY(QString List READ List)
    Q_PROPERTY(int Position READ Position)
    Q_PROPERTY(bool Paused READ Paused)
    Q_PROPERTY(double SecondsToNext READ SecondsToNext)

public:
    static constexpr const char* kService = "org.vantrel.Vantrel";
    static constexpr const char* kPath = "/org/vantrel/Vantrel";
    static constexpr const char* kInterface = "org.vantrel.Vantrel";
    static constexpr const char* kRefused = "org.vantrel.Vantrel.Error.Refused";

    BusDoor(Verbs* verbs, DoorHost* host, QObject* parent = nullptr);
    // The name and the object leave the bus with the door.
    ~BusDoor() override;

    // Puts the object and the well-known name on `bus`; false, with `why`, when there is no bus or
    // the name is another's.
    bool publish(const QDBusConnection& bus, QString* why = nullptr);

    // A start that would become the program but finds Vantrel already on `bus` (its runtime
    // folder was another, so the socket did not find it) hands `request` over there; the answer,
    // or none when no other Vantrel is on the bus or it did not answer.
    static std::optional<DoorMessage::Reply> handOverToRunning(const QDBusConnection& bus,
                                                               const DoorMessage::Request& request);

    QString State() const;
    int CurrentWindow() const;
    int WindowCount() const;
    bool Running() const;
    QString List() const;
    int Position() const;
    bool Paused() const;
    double SecondsToNext() const;

public slots:
    void Open(const QStringList& pages, const QString& where, int slot);
    void Run(const QString& list, int intervalSeconds, bool loop, bool severalWindows, bool keepLoaded);
    void Stop();
    void Next();
    void Previous();
    void Pause();
    void Resume();
    void Reload(int slot);
    void Raise(const QString& activationToken);
    void Quit(bool discard);
    QString Status();
    int HandOver(const QStringList& arguments, const QString& folder, const QString& activationToken, QString& out,
                 QString& err);

    // org.freedesktop.Application: the desktop's way in.
    void Activate(const QVariantMap& platformData);
    void Open(const QStringList& uris, const QVariantMap& platformData);
    void ActivateAction(const QString& actionName, const QVariantList& parameter, const QVariantMap& platformData);

signals:
    void PageShown(int slot, const QString& address, const QString& title);

private:
    DoorMessage::Reply carryOut(const CommandRequest& request, const QString& activationToken = QString());
    QVariantMap properties() const;
    void tellChanges();

    QPointer<Verbs> m_verbs;
    DoorHost* m_host = nullptr;
    QDBusConnection m_bus{QString()};
    QVariantMap m_told; // the properties as last told
    bool m_published = false;
};
