#include "support/taskform.h"

#include "support/window.h"

#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QTest>
#include <QTextEdit>

using namespace Qt::Literals::StringLiterals;

void fillForm(const MainWindow &window, const QString &title)
{
    widget<QLineEdit>(window, "TaskTitle")->setText(title);
    widget<QTextEdit>(window, "TaskDescription")->setPlainText(u"Medio kilo"_s);
    widget<QComboBox>(window, "CategoryTaskBox")->setCurrentIndex(1);
    widget<QDateEdit>(window, "DateLimitTask")->setDate(QDate(2031, 3, 5));
    widget<QComboBox>(window, "UrgencyTaskBox")->setCurrentIndex(3);
}

QStringList formTexts(const MainWindow &window)
{
    return {widget<QLineEdit>(window, "TaskTitle")->text(),
        widget<QTextEdit>(window, "TaskDescription")->toPlainText(),
        widget<QComboBox>(window, "CategoryTaskBox")->currentText(),
        widget<QDateEdit>(window, "DateLimitTask")->date().toString(Qt::ISODate),
        widget<QComboBox>(window, "UrgencyTaskBox")->currentText()};
}

QStringList filledTexts()
{
    return {u"Comprar piñón"_s, u"Medio kilo"_s, u"Trabajo"_s, u"2031-03-05"_s, u"Alta"_s};
}
