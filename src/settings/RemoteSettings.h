#pragma once

// "Control Vantrel from a browser", kept in Vantrel.conf under [Remote]: off until a person
// switches it on; on 127.0.0.1 unless they chose the local network. The token is not kept here
// (the desktop's secret store keeps it).
struct RemoteSettings
{
    bool enabled = false;
    bool localNetwork = false;
    int port = 8765;

    bool operator==(const RemoteSettings&) const = default;

    static RemoteSettings read();
    bool write() const;
};
