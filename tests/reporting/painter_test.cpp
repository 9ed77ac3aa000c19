// What stands on a page, seen in its pixels.
#include "report_helpers.h"

#include <QPainter>

namespace tradewick::test
{

namespace
{

constexpr double pixelsPerTwip = 0.2;

// A page of one band, which begins at 100/200.
QImage painted(const QString &objects, const QVariantList &row = {}, const QHash<QString, QImage> &images = {})
{
    const auto model = templateOf("<detail height='4000'>" + objects + "</detail>");
    const auto pages =
        Layout(model, std::make_unique<TestRows>(QStringList{"a", "b"}, QVector<QVariantList>{row + QVariantList(2)}),
               {}, images, Paper())
            .all();
    QImage image(700, 600, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    paintPage(painter, *pages[0], pixelsPerTwip);
    return image;
}

// The rectangle, in twips, of all pixels of a colour or near enough to it.
QRectF ink(const QImage &image, QRgb colour)
{
    QRect found;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb is = image.pixel(x, y);
            if (qAbs(qRed(is) - qRed(colour)) + qAbs(qGreen(is) - qGreen(colour)) + qAbs(qBlue(is) - qBlue(colour)) <
                300)
                found |= QRect(x, y, 1, 1);
        }
    }
    return {QPointF(found.topLeft()) / pixelsPerTwip, QSizeF(found.size()) / pixelsPerTwip};
}

TEST(Painter, LinesBoxesAndPicturesStandWhereTheyAreDrawn)
{
    constexpr QRgb black = 0xff000000, red = 0xffff0000, green = 0xff00ff00;
    QImage logo(40, 20, QImage::Format_RGB32);
    logo.fill(red);
    const QString line = "<line name='N' x1='1000' y1='500' ", box = "left='1000' top='500' width='2000' ";
    const struct {
        QString object;
        QRgb colour;
        QRectF ink;      // in twips of the page
        int least, most; // pixels of just that colour
    } cases[] = {
        {line + "x2='3000' y2='500' weight='3'/>", black, {1077, 677, 2045, 45}, 3200, 3700},
        {line + "x2='1000' y2='2500' weight='1'/>", black, {1092, 692, 15, 2015}, 700, 1300},
        {line + "x2='3000' y2='500' weight='3' style='3'/>", black, {1100, 677, 1935, 45}, 900, 1300},
        {line + "x2='3000' y2='500' weight='3' foreColor='#ff0000'/>", red, {1077, 677, 2045, 45}, 3200, 3700},
        {"<shape name='S' " + box + "height='1000' backColor='#00ff00'/>", green, {1107, 707, 1985, 985}, 77000, 78500},
        {"<shape name='S' " + box + "height='1000' kind='2' backColor='#00ff00'/>",
         green,
         {1107, 707, 1985, 985},
         60000,
         63000},
        {"<shape name='S' " + box + "height='1000'/>", black, {1092, 692, 2015, 1015}, 1200, 3700},
        {"<image name='I' " + box + "height='2000'/>", red, {1100, 1200, 2000, 1000}, 78000, 80200},
        {"<label name='T' " + box + "height='500' backColor='#00ff00'>.</label>",
         green,
         {1100, 700, 2000, 500},
         39000,
         40000},
    };
    for (const auto &of : cases) {
        const QImage image = painted(of.object, {}, {{"I", logo}});
        const QRectF found = ink(image, of.colour);
        EXPECT_NEAR(found.left(), of.ink.left(), 13) << of.object.toStdString();
        EXPECT_NEAR(found.top(), of.ink.top(), 13) << of.object.toStdString();
        EXPECT_NEAR(found.right(), of.ink.right(), 13) << of.object.toStdString();
        EXPECT_NEAR(found.bottom(), of.ink.bottom(), 13) << of.object.toStdString();
        int pixels = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                pixels += image.pixel(x, y) == of.colour;
        EXPECT_TRUE(pixels >= of.least && pixels <= of.most) << of.object.toStdString() << pixels;
    }
}

TEST(Painter, TextsKeepWithinTheirBoxes)
{
    const QString box = "<field name='F' left='1000' top='500' width='1500' height='%1' dataField='a' %2/>";
    const struct {
        QVariant value;
        int height;
        QString more;
        int least; // twips that its ink is wide
    } cases[] = {{QString(200, 'W'), 240, "", 1250},
                 {QString(200, 'W'), 480, "align='right'", 1250},
                 {"ROUND WOODEN FRAMES AND MIRRORS", 480, "align='center'", 1000},
                 {"SLIGHTLY TOO LONG", 240, "", 1300},
                 {123456789012345.0, 240, "align='right'", 1430},
                 {123456789012345.0, 480, "", 1430}};
    for (const auto &of : cases) {
        const QRectF found = ink(painted(box.arg(of.height).arg(of.more), {of.value}), 0xff000000);
        EXPECT_TRUE(QRectF(1090, 690, 1520, of.height + 60).contains(found))
            << of.value.toString().toStdString() << found.left() << ' ' << found.right() << ' ' << found.bottom();
        EXPECT_GE(found.width(), of.least) << of.value.toString().toStdString();
    }
}

TEST(Painter, BlanksOfTheChineseFacesAreHalfAnEmWide)
{
    const QString label = "<label name='T' left='1000' top='500' width='2000' height='300' size='10.5'>%1</label>";
    const auto right = [&](const QString &text) { return ink(painted(label.arg(text)), 0xff000000).right(); };
    EXPECT_NEAR(right("口   口") - right("口"), 210 + 3 * 105, 6);
    EXPECT_NEAR(right("A  B 口") - right("AB口"), 3 * 105, 6);
}

} // namespace

} // namespace tradewick::test
