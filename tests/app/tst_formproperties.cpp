#include "ui_mainwindow.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize learnButtonSize = {0, 22};

} // namespace

/// The properties of the form's widgets, before the running window changes them.
class tst_FormProperties : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void the_window_has_its_size_title_and_parts();
    void the_style_sheet_is_eight_rules_in_order();
    void every_property_has_its_first_value_data();
    void every_property_has_its_first_value();
    void only_the_speed_caption_is_italic();
    void only_the_left_radio_buttons_are_in_the_group();
    void a_radio_button_unchecks_only_its_own_side_data();
    void a_radio_button_unchecks_only_its_own_side();

private:
    template <class T = QWidget>
    T *find(const char *name) const
    {
        return m_window->findChild<T *>(QString::fromLatin1(name));
    }

    std::unique_ptr<QMainWindow> m_window;
    Ui::MainWindow m_form = {};
};

void tst_FormProperties::init()
{
    m_window = std::make_unique<QMainWindow>();
    m_form.setupUi(m_window.get());
}

void tst_FormProperties::cleanup()
{
    m_window.reset();
}

void tst_FormProperties::the_window_has_its_size_title_and_parts()
{
    QCOMPARE(m_window->objectName(), u"MainWindow"_s);
    QCOMPARE(m_window->size(), QSize(937, 387));
    QCOMPARE(m_window->minimumSize(), QSize(0, 0));
    QCOMPARE(m_window->sizePolicy(), QSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred));
    QCOMPARE(m_window->documentMode(), false);
    QCOMPARE(m_window->windowTitle(), u"Laser Rallyvane - by Vellaro"_s);
    QCOMPARE(m_window->centralWidget()->objectName(), u"centralwidget"_s);
    QCOMPARE(m_window->centralWidget()->metaObject()->className(), "QWidget");
    QCOMPARE(m_window->menuWidget(), find("menubar"));
    QCOMPARE(m_form.menubar->geometry(), QRect(0, 0, 937, 21));
    QVERIFY(m_form.menubar->actions().isEmpty());
    QCOMPARE(m_window->statusBar(), find<QStatusBar>("statusbar"));
}

void tst_FormProperties::the_style_sheet_is_eight_rules_in_order()
{
    const QStringList rules = {
        u"QPushButton {border:1px solid #AAA; background:#888;}"_s,
        u"QPushButton:hover {background:#AAD;}"_s,
        u"QPushButton:pressed {background:#88B;}"_s,
        u"#centralwidget {background-color:#222;}"_s,
        u"QLabel {color:#CCC;}"_s,
        u"QRadioButton {color:#CCC; }"_s,
        u"QGroupBox {color:#CCC; }"_s,
        u"#statusbar {background-color:#222;}"_s,
    };
    QCOMPARE(m_window->styleSheet(), rules.join(u'\n'));
}

void tst_FormProperties::every_property_has_its_first_value_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("expected");
    const auto add = [](const QByteArray &name, const QByteArray &property,
                         const QVariant &expected) {
        QTest::addRow("%s of %s", property.constData(), name.constData())
            << name << property << expected;
    };
    add("genGroupBox", "alignment", int(Qt::AlignLeft | Qt::AlignVCenter));
    add("genGroupBox", "flat", false);
    add("genGroupBox", "checkable", false);
    for (const char *button : {"enableButton", "showButton", "resetButton"}) {
        add(button, "checkable", true);
        add(button, "checked", false);
        add(button, "enabled", true);
    }
    add("resetButton", "minimumSize", QSize(0, 25));
    add("label_3", "alignment", int(Qt::AlignCenter));
    add("statusLabel", "alignment", int(Qt::AlignCenter));
    const auto addSlider = [&](const char *name, int minimum, int maximum, int value) {
        add(name, "minimum", minimum);
        add(name, "maximum", maximum);
        add(name, "value", value);
        add(name, "orientation", int(Qt::Horizontal));
    };
    addSlider("speedSlider", 10, 30, 20);
    addSlider("sensLSlider", 256, 768, 512);
    addSlider("sensRSlider", 256, 768, 512);
    for (const char *button : {"learnStartL", "learnCCL", "learnUpL", "learnDownL", "learnStartR",
             "learnCCR", "learnUpR", "learnDownR"}) {
        add(button, "minimumSize", learnButtonSize);
        add(button, "checkable", false);
    }
    for (const QByteArray &side : {QByteArray("left"), QByteArray("right")}) {
        add(side + "MidiRadio", "checked", false);
        add(side + "XboxRadio", "checked", true);
        add(side + "KeyboardRadio", "checked", false);
    }
    for (const char *box : {"bitsLCheck", "bitsRCheck"})
        add(box, "checked", false);
}

void tst_FormProperties::every_property_has_its_first_value()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, property);
    QFETCH(QVariant, expected);
    const QWidget *widget = find(name);
    QVERIFY(widget);
    QVariant value = widget->property(property);
    QVERIFY(value.isValid());
    QVERIFY(value.convert(expected.metaType()));
    QCOMPARE(value, expected);
}

void tst_FormProperties::only_the_speed_caption_is_italic()
{
    for (const QLabel *label : m_window->findChildren<QLabel *>())
        QCOMPARE(label->font().italic(), label == m_form.label_3);
}

void tst_FormProperties::only_the_left_radio_buttons_are_in_the_group()
{
    const auto *group = find<QButtonGroup>("buttonGroup");
    QVERIFY(group);
    QCOMPARE(group->parent(), m_window.get());
    QVERIFY(group->exclusive());
    const QList<QAbstractButton *> buttons = group->buttons();
    QCOMPARE(buttons.size(), 3);
    for (QAbstractButton *button :
        {m_form.leftMidiRadio, m_form.leftXboxRadio, m_form.leftKeyboardRadio}) {
        QVERIFY(buttons.contains(button));
        QVERIFY(group->id(button) < -1); // assigned by Qt
    }
    for (const QRadioButton *button :
        {m_form.rightMidiRadio, m_form.rightXboxRadio, m_form.rightKeyboardRadio}) {
        QVERIFY(!button->group());
        QVERIFY(button->autoExclusive());
    }
}

void tst_FormProperties::a_radio_button_unchecks_only_its_own_side_data()
{
    QTest::addColumn<QString>("clicked");
    QTest::addColumn<QStringList>("checked");
    QTest::addRow("left MIDI") << u"leftMidiRadio"_s
                               << QStringList{u"leftMidiRadio"_s, u"rightXboxRadio"_s};
    QTest::addRow("left keyboard")
        << u"leftKeyboardRadio"_s << QStringList{u"leftKeyboardRadio"_s, u"rightXboxRadio"_s};
    QTest::addRow("right MIDI") << u"rightMidiRadio"_s
                                << QStringList{u"leftXboxRadio"_s, u"rightMidiRadio"_s};
    QTest::addRow("right keyboard")
        << u"rightKeyboardRadio"_s << QStringList{u"leftXboxRadio"_s, u"rightKeyboardRadio"_s};
}

void tst_FormProperties::a_radio_button_unchecks_only_its_own_side()
{
    QFETCH(QString, clicked);
    QFETCH(QStringList, checked);
    m_window->show();
    auto *radio = m_window->findChild<QRadioButton *>(clicked);
    QTest::mouseClick(radio, Qt::LeftButton, {}, {8, radio->height() / 2});
    QStringList found;
    for (const QRadioButton *button : m_window->findChildren<QRadioButton *>()) {
        if (button->isChecked())
            found.append(button->objectName());
    }
    found.sort();
    QCOMPARE(found, checked);
}

QTEST_MAIN(tst_FormProperties)
#include "tst_formproperties.moc"
