#pragma once

class QDateEdit;

/**
 * Lets assistive technology raise, lower and set a date, as a number of days.
 *
 * Qt tells it of every spin box what the properties of a number are, which a date has none of: they are added
 * here as dynamic ones, follow the date and are followed by it.
 */
void offerDateAsNumber(QDateEdit *edit);
