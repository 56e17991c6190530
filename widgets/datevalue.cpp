#include "widgets/datevalue.h"

#include <QDateEdit>
#include <QEvent>

namespace {

constexpr const char *valueProperty = "value";

class DateValue final : public QObject
{
    Q_DISABLE_COPY_MOVE(DateValue)
public:
    explicit DateValue(QDateEdit *edit)
        : QObject(edit)
        , m_edit(edit)
    {
        edit->setProperty("minimum", edit->minimumDate().toJulianDay());
        edit->setProperty("maximum", edit->maximumDate().toJulianDay());
        edit->setProperty("stepSize", 1);
        show();
        edit->installEventFilter(this);
        connect(edit, &QDateEdit::dateChanged, this, [this] { show(); });
    }
    ~DateValue() override = default;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::DynamicPropertyChange
            && static_cast<QDynamicPropertyChangeEvent *>(event)->propertyName() == valueProperty) {
            const QDate wanted = QDate::fromJulianDay(m_edit->property(valueProperty).toLongLong());
            if (wanted != m_edit->date()) {
                m_edit->setDate(wanted);
                show(); // what is out of bounds gives way
            }
        }
        return QObject::eventFilter(watched, event);
    }

private:
    void show() { m_edit->setProperty(valueProperty, m_edit->date().toJulianDay()); }

    QDateEdit *m_edit;
};

} // namespace

void offerDateAsNumber(QDateEdit *edit)
{
    new DateValue(edit);
}
