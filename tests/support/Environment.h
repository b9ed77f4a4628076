#pragma once

#include <QByteArray>

#include <optional>

/// Sets an environment variable, or removes it, for its lifetime.
class EnvironmentVariable {
public:
    explicit EnvironmentVariable(const char* name, const std::optional<QByteArray>& value = std::nullopt)
        : m_name(name) {
        if (qEnvironmentVariableIsSet(name)) {
            m_before = qgetenv(name);
        }
        Set(value);
    }
    ~EnvironmentVariable() { Set(m_before); }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

private:
    void Set(const std::optional<QByteArray>& value) {
        if (value.has_value()) {
            qputenv(m_name, *value);
        } else {
            qunsetenv(m_name);
        }
    }

    const char* m_name;
    std::optional<QByteArray> m_before;
};
