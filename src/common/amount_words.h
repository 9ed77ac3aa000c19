// Amounts in words: English capitals for the foreign side, Chinese capital numerals for the domestic side.
#pragma once

#include <QString>

// The amount, the leading number of the text, in English words: "TWO THOUSAND  ONLY". The text is replaced by the
// number it was read as, rounded to two places. Beyond 15 characters *tooLong becomes true, so that the caller tells
// amountTooLong() to whoever asked for the words, and they are given all the same. Throws DataError 13 at a sign.
QString AmountInEnglish(QString &amount, bool *tooLong = nullptr);
// What is told of an amount that is too long.
QString amountTooLong();

// The amount in Chinese capitals: 壹仟零伍圆整. The amount is replaced by itself rounded to two places. Zero gives the
// empty text; digits from a million million on are left out.
QString AmountInChinese(double &amount);

// Words of a group of three characters, each of which is a digit. All throw DataError 13 where they meet another.
QString DigitWord1(const QString &group);    // its first digit, empty for 0
QString DigitWord3(const QString &group);    // its third digit, empty for 0
QString TeenWord(const QString &group);      // its second and third digit as 10 to 19
QString TensWord(const QString &group);      // its second digit as tens
QString TwoDigitWords(const QString &group); // its last two digits
QString GroupWords(const QString &group);    // all three digits; empty for "000"

// What a group's place is called, 0 the lowest: THOUSAND, MILLION, BILLION for 1 to 3, else empty.
QString ScaleWord(int index);
