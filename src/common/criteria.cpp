#include "common/criteria.h"

namespace tradewick
{

Fragment fragmentOf(const Criterion &criterion, const Values &criteria, bool isPrinted)
{
    const char *text = isPrinted && criterion.printed ? criterion.printed : criterion.fragment;
    const QVariant value = criteria.value(criterion.name);
    if (!text || value.toString().trimmed().isEmpty())
        return {};
    return {QString::fromUtf8(text), {{criterion.name, value}}};
}

QVector<Fragment> fragmentsOf(const QVector<Criterion> &all, const Values &criteria, bool isPrinted)
{
    QVector<Fragment> fragments;
    for (const Criterion &one : all)
        fragments.append(fragmentOf(one, criteria, isPrinted));
    return fragments;
}

QString joined(const QVector<Fragment> &fragments)
{
    QString text;
    for (const Fragment &one : fragments)
        text += one.text;
    return text;
}

} // namespace tradewick
