#pragma once

#include <QString>

/// Tells gateways on one data folder of each other, through locks on the file "smsgateway.lock" in it. The
/// system drops a lock when its process ends, however that ends, so nothing stale stays behind; the file
/// itself stays and is empty.
class GatewayLock {
public:
    /// Takes a share, waiting while another gateway holds the lock alone. Throws std::runtime_error if the
    /// file cannot be opened or locked.
    explicit GatewayLock(const QString& folder);
    ~GatewayLock();
    GatewayLock(const GatewayLock&) = delete;
    GatewayLock& operator=(const GatewayLock&) = delete;

    /// True if no other gateway is at work here; then none can start until Share is called.
    [[nodiscard]] bool TryAlone() const;
    /// Back to a share of the lock; see TryAlone.
    void Share() const;

    inline static const QString FileName = QStringLiteral("smsgateway.lock");

private:
    [[nodiscard]] bool Set(short type, int command) const;

    int m_descriptor = -1;
};
