#include "widgets/datevalue.h"
#include "support/windowtest.h"

#include <QAccessible>
#include <QDateEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

QAccessibleValueInterface *valueOf(QDateEdit &edit)
{
    QAccessibleInterface *told = QAccessible::queryAccessibleInterface(&edit);
    return told ? told->valueInterface() : nullptr;
}

} // namespace

class DateValueTest final : public WindowTest
{
    Q_OBJECT
private slots:
    void isRaisedAndLoweredByADay()
    {
        QDateEdit edit(QDate(2027, 2, 28));
        offerDateAsNumber(&edit);
        QAccessibleValueInterface *value = valueOf(edit);
        QVERIFY(value);
        QCOMPARE(value->minimumStepSize().toDouble(), 1.0);

        // A number with a fraction is what assistive technology sends.
        value->setCurrentValue(value->currentValue().toDouble() + value->minimumStepSize().toDouble());
        QCOMPARE(edit.date(), QDate(2027, 3, 1));

        value->setCurrentValue(value->currentValue().toDouble() - value->minimumStepSize().toDouble());
        QCOMPARE(edit.date(), QDate(2027, 2, 28));
    }

    void followsTheDate()
    {
        QDateEdit edit(QDate(2027, 2, 28));
        offerDateAsNumber(&edit);
        const QAccessibleValueInterface *value = valueOf(edit);
        QCOMPARE(value->currentValue().toLongLong(), QDate(2027, 2, 28).toJulianDay());

        edit.setDate(QDate(2030, 1, 5));

        QCOMPARE(value->currentValue().toLongLong(), QDate(2030, 1, 5).toJulianDay());
    }

    void staysWithinBounds()
    {
        QDateEdit edit(QDate(2027, 2, 28));
        edit.setDateRange(QDate(2027, 1, 1), QDate(2027, 12, 31));
        offerDateAsNumber(&edit);
        QAccessibleValueInterface *value = valueOf(edit);
        QCOMPARE(value->minimumValue().toLongLong(), QDate(2027, 1, 1).toJulianDay());
        QCOMPARE(value->maximumValue().toLongLong(), QDate(2027, 12, 31).toJulianDay());

        for (int time = 0; time < 2; ++time) { // the second time the date stays as it is
            value->setCurrentValue(value->maximumValue().toDouble() + 1);

            QCOMPARE(edit.date(), QDate(2027, 12, 31));
            QCOMPARE(value->currentValue().toDouble(), value->maximumValue().toDouble());
        }
    }
};

NUBARIA_TEST_MAIN(DateValueTest)
#include "datevaluetest.moc"
