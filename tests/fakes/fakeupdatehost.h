#pragma once

#include <QString>

/// The update server that this build has, in place of the build setting.
class FakeUpdateHost
{
public:
    /// Becomes the one of this process until it is destroyed. One at a time.
    explicit FakeUpdateHost(QString host);
    ~FakeUpdateHost();
    FakeUpdateHost(const FakeUpdateHost &) = delete;
    FakeUpdateHost &operator=(const FakeUpdateHost &) = delete;

    const QString host; ///< with or without a port
};
