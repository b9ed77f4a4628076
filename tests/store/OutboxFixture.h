#pragma once

#include "store/AnyMessage.h"
#include "store/FakeOffice.h"
#include "store/Outbox.h"

#include <gtest/gtest.h>

/// The operations of the outbox on an engine that fails on demand.
class OutboxTest : public ::testing::Test {
protected:
    FakeOffice Office;
    OutboxServices Services = Office.Outbox();

    void ServeSystem(const QVariant& size) {
        Office.Engine.Serve(QStringLiteral("FROM System"),
                            {{QStringLiteral("sysSMSMaxMessageSize")}, {{size}}});
    }
    void ServeIdentity(const QVariant& id) {
        Office.Engine.Serve(QStringLiteral("@@IDENTITY"), {{QStringLiteral("ID")}, {{id}}});
    }
    void OpenForWriting() {
        ServeSystem(qint64{459});
        Office.SetOutbox(QStringLiteral("\\\\server\\share\\sms"));
        ASSERT_TRUE(mdlOutbox::OpenOutbox(Services));
        ASSERT_TRUE(Office.OutboxValues.OutboxDB->OpenDatabase(engine::Mode::ReadWriteShared));
        Office.Engine.Statements.clear();
    }
    [[nodiscard]] BoxRequest Critical(const QString& text) const {
        return {QStringLiteral("Larkspan Messenger"), text, BoxIcon::Critical, BoxButtons::Ok};
    }
};
