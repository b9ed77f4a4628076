#include "store/engine/sql/Grouping.h"

#include <algorithm>

namespace engine::sql {

namespace {

bool IsSameName(QStringView left, QStringView right) {
    return left.compare(right, Qt::CaseInsensitive) == 0;
}

/// There is one table in a statement, so its name before a column's makes no difference.
bool IsSame(const Expression& left, const Expression& right) {
    return left.Kind == right.Kind && left.IsNegated == right.IsNegated && left.Called == right.Called &&
           left.Value == right.Value && IsSameName(left.Column.Column, right.Column.Column) &&
           left.Operators == right.Operators &&
           std::equal(left.Operands.begin(), left.Operands.end(), right.Operands.begin(),
                      right.Operands.end(), IsSame);
}

bool HasAggregate(const Expression& expression) {
    return (expression.Kind == ExpressionKind::Call && IsAggregate(expression.Called)) ||
           std::any_of(expression.Operands.begin(), expression.Operands.end(), HasAggregate);
}

class Grouping {
public:
    explicit Grouping(const Select& select) : m_select(select) {}

    [[nodiscard]] bool IsWhole() const {
        const auto& items = m_select.Items;
        const auto& order = m_select.OrderBy;
        const bool isGrouped = !m_select.GroupBy.empty() ||
                               std::any_of(items.begin(), items.end(),
                                           [](const auto& item) { return HasAggregate(item.Value); }) ||
                               std::any_of(order.begin(), order.end(),
                                           [](const auto& item) { return HasAggregate(item.Value); });
        return !isGrouped || (!m_select.IsAll &&
                              std::all_of(items.begin(), items.end(),
                                          [this](const auto& item) { return IsOfGroup(item.Value); }) &&
                              std::all_of(order.begin(), order.end(), [this](const auto& item) {
                                  return IsAlias(item.Value) || IsOfGroup(item.Value);
                              }));
    }

private:
    [[nodiscard]] bool IsOfGroup(const Expression& expression) const {
        const auto& terms = m_select.GroupBy;
        if ((expression.Kind == ExpressionKind::Call && IsAggregate(expression.Called)) ||
            std::any_of(terms.begin(), terms.end(),
                        [&](const Expression& term) { return IsSame(term, expression); })) {
            return true;
        }
        return expression.Kind != ExpressionKind::Column &&
               std::all_of(expression.Operands.begin(), expression.Operands.end(),
                           [this](const Expression& operand) { return IsOfGroup(operand); });
    }

    /// A name that the SELECT itself gives.
    [[nodiscard]] bool IsAlias(const Expression& expression) const {
        return expression.Kind == ExpressionKind::Column && expression.Column.Table.isEmpty() &&
               std::any_of(m_select.Items.begin(), m_select.Items.end(), [&](const SelectItem& item) {
                   return !item.Alias.isEmpty() && IsSameName(item.Alias, expression.Column.Column);
               });
    }

    const Select& m_select;
};

}  // namespace

bool IsGroupingWhole(const Select& select) {
    return Grouping(select).IsWhole();
}

}  // namespace engine::sql
