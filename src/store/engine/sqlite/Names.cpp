#include "store/engine/sqlite/Names.h"

namespace engine::sqlite {

namespace {

class Collector {
public:
    UsedNames Run(const sql::Statement& statement) {
        std::visit([this](const auto& one) { Visit(one); }, statement);
        return std::move(m_names);
    }

private:
    void AddTable(QStringView name) { m_names.Tables.append(name.toString()); }
    void AddColumn(QStringView name) { m_names.Columns.append(name.toString()); }

    void Visit(const sql::Expression& expression) {
        if (expression.Kind == sql::ExpressionKind::Column) {
            if (!expression.Column.Table.isEmpty()) {
                AddTable(expression.Column.Table);
            }
            AddColumn(expression.Column.Column);
        }
        for (const sql::Expression& operand : expression.Operands) {
            Visit(operand);
        }
    }
    void Visit(const std::optional<sql::Expression>& expression) {
        if (expression) {
            Visit(*expression);
        }
    }

    void Visit(const sql::Select& select) {
        QStringList aliases;
        AddTable(select.From);
        for (const sql::SelectItem& item : select.Items) {
            Visit(item.Value);
            aliases.append(item.Alias.toString());
        }
        const qsizetype ownColumns = m_names.Columns.size();
        Visit(select.Where);
        for (const sql::Expression& term : select.GroupBy) {
            Visit(term);
        }
        for (const sql::OrderItem& item : select.OrderBy) {
            Visit(item.Value);
        }
        for (qsizetype i = m_names.Columns.size() - 1; i >= ownColumns; --i) {
            if (aliases.contains(m_names.Columns.at(i), Qt::CaseInsensitive)) {
                m_names.Columns.removeAt(i);
            }
        }
    }
    void Visit(const sql::Insert& insert) {
        AddTable(insert.Table);
        for (const QStringView column : insert.Columns) {
            AddColumn(column);
        }
        for (const sql::Expression& value : insert.Values) {
            Visit(value);
        }
    }
    void Visit(const sql::Update& update) {
        AddTable(update.Table);
        for (const sql::Assignment& assignment : update.Assignments) {
            AddColumn(assignment.Column);
            Visit(assignment.Value);
        }
        Visit(update.Where);
    }
    void Visit(const sql::Delete& statement) {
        AddTable(statement.Table);
        Visit(statement.Where);
    }

    UsedNames m_names;
};

}  // namespace

UsedNames CollectNames(const sql::Statement& statement) {
    return Collector().Run(statement);
}

}  // namespace engine::sqlite
