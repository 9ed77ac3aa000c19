#include "shipping/shipping_note.h"

#include "common/record_form.h"
#include "papers/papers.h"

namespace tradewick
{

RecordFormSpec shippingNote(const ShippingNote &note)
{
    const QString kind = note.kind;
    return {
        .name = note.name,
        .caption = note.caption,
        .statement = note.statement,
        .pairsInRow = 3,
        .choices = {{"Combo2", note.choiceCaption, choicesOf(kind)}},
        .buttons = {{.name = "Cmdprint",
                     .caption = "打印",
                     .shortcut = "Ctrl+P",
                     .press =
                         [kind](RecordForm &form) {
                             printChoice(kind, form.choice("Combo2"), form.text("Text(0)"), &form);
                         },
                     .ofStored = true}},
        .numbering = note.numbering,
        .alsoNumbered = note.lineNumber,
        .defaults = {today("djrq")},
        .required = {{"Text(0)", "所有名称不能为空", 0, note.numberField}},
        .failures = failuresOfDocuments,
        .startsOnLast = true,
        .firstFocus = note.numberField,
        .adding = Adding::UntilCancel,
        .cancelDropsLines = true,
        .afterDelete = AfterDelete::Last,
        .deleteQuestion = "是否删除当前记录?",
    };
}

LinesSpec shippedGoods(const QVector<GridColumn> &columns)
{
    return {.grids = {{.columns = columns,
                       .dropDowns = {{"b_zdw", "TDBDropDown1",
                                      "select jldw from sys_jldw where not jldw is null order by jldw"}}}},
            .starts = {{"zmz", "0"}, {"hjtj", "0"}, {"jianshu", "0"}}};
}

} // namespace tradewick
