#pragma once

#include <QString>

// A run-time error as the program reports it to the user: the classic error number and its text,
// e.g. 70 "Permission denied". Number 0 means success. File functions return these as values;
// only the caller decides whether and how to show them.
struct RunError
{
    enum Number {
        None = 0,
        InvalidCall = 5,
        Overflow = 6,
        SubscriptOutOfRange = 9,
        TypeMismatch = 13,
        FileNotFound = 53,
        DeviceIoError = 57,
        DiskFull = 61,
        InputPastEndOfFile = 62,
        PermissionDenied = 70,
        PathFileAccessError = 75,
        PathNotFound = 76,
        InvalidPropertyValue = 380,
    };

    int number = None;

    RunError() = default;
    RunError(int n) : number(n) {}

    bool ok() const { return number == None; }
    explicit operator bool() const { return number != None; }
    bool operator==(const RunError& other) const = default;

    // The classic description of the number ("Path not found").
    QString text() const;
    // "<number> - <text>", the tail of every "Save Error - " and "Error: " message.
    QString numberAndText() const;

    // The error that a failed system call on `path` stands for. ENOENT is "File not found" when the
    // file's folder exists and "Path not found" when it does not.
    static RunError fromErrno(int err, const QString& path = QString());
};
