#pragma once

#include <QString>

/// Replaces the update server of the build setting.
class FakeUpdateHost
{
public:
    /// Is the update server of this process until destroyed. One at a time.
    explicit FakeUpdateHost(QString host);
    ~FakeUpdateHost();
    FakeUpdateHost(const FakeUpdateHost &) = delete;
    FakeUpdateHost &operator=(const FakeUpdateHost &) = delete;

    const QString host; ///< with or without a port
};
