#include "ui_mainwindow.h"

#include <QTest>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace {

/// One widget of the form: its position and text.
struct Place
{
    const char *name;
    const char *className;
    const char *layout;
    QRect cell; ///< column, row, columns, rows
    const char *text = nullptr; ///< null if the class shows none
};

constexpr QRect at(int row, int column, int rowSpan = 1, int columnSpan = 1)
{
    return {column, row, columnSpan, rowSpan};
}

// For a widget in a row layout instead of a grid, the column is its position in the row.
const std::initializer_list<Place> places = {
    {"genGroupBox", "QGroupBox", "gridLayout_4", at(0, 0), ""},
    {"enableButton", "QPushButton", "gridLayout_2", at(0, 0), "Enable Laser Output"},
    {"showButton", "QPushButton", "gridLayout_2", at(1, 0), "Show game"},
    {"zoneComboBox", "QComboBox", "gridLayout_2", at(2, 0), "Select laser zone"},
    {"frame_9", "QFrame", "gridLayout_2", at(4, 0)},
    {"label_3", "QLabel", "gridLayout_13", at(0, 0, 1, 3), "Game Speed"},
    {"label_4", "QLabel", "gridLayout_13", at(1, 0), "Min"},
    {"speedSlider", "QSlider", "gridLayout_13", at(1, 1)},
    {"label_5", "QLabel", "gridLayout_13", at(1, 2), "Max"},
    {"resetButton", "QPushButton", "gridLayout_2", at(7, 0), "Reset Game"},
    {"groupBox_2", "QGroupBox", "gridLayout_4", at(0, 1), "Left controller"},
    {"frame", "QFrame", "gridLayout", at(0, 0)},
    {"leftMidiRadio", "QRadioButton", "gridLayout_5", at(0, 0), "MIDI"},
    {"midiLComboBox", "QComboBox", "gridLayout_5", at(0, 1), "No device"},
    {"leftXboxRadio", "QRadioButton", "gridLayout_5", at(1, 0), "XBox"},
    {"xboxLComboBox", "QComboBox", "gridLayout_5", at(1, 1), "No device"},
    {"leftKeyboardRadio", "QRadioButton", "gridLayout_5", at(2, 0), "Keyboard"},
    {"frame_2", "QFrame", "gridLayout", at(1, 0)},
    {"learnStartL", "QPushButton", "gridLayout_7", at(0, 0), "Learn start"},
    {"frame_5", "QFrame", "gridLayout", at(2, 0)},
    {"learnCCL", "QPushButton", "horizontalLayout", at(0, 0), "Learn Move"},
    {"learnUpL", "QPushButton", "horizontalLayout", at(0, 1), "Learn Up"},
    {"learnDownL", "QPushButton", "horizontalLayout", at(0, 2), "Learn Down"},
    {"frame_7", "QFrame", "gridLayout_9", at(3, 0)},
    {"label_2", "QLabel", "gridLayout_11", at(0, 0), "Sensitivity"},
    {"sensLSlider", "QSlider", "gridLayout_11", at(0, 1)},
    {"bitsLCheck", "QCheckBox", "gridLayout_11", at(0, 2), "14 bits"},
    {"groupBox", "QGroupBox", "gridLayout_4", at(0, 2), "Right controller"},
    {"frame_3", "QFrame", "gridLayout_3", at(0, 0)},
    {"rightMidiRadio", "QRadioButton", "gridLayout_6", at(0, 0), "MIDI"},
    {"midiRComboBox", "QComboBox", "gridLayout_6", at(0, 1), "No device"},
    {"rightXboxRadio", "QRadioButton", "gridLayout_6", at(1, 0), "XBox"},
    {"xboxRComboBox", "QComboBox", "gridLayout_6", at(1, 1), "No device"},
    {"rightKeyboardRadio", "QRadioButton", "gridLayout_6", at(2, 0), "Keyboard"},
    {"frame_4", "QFrame", "gridLayout_3", at(1, 0)},
    {"learnStartR", "QPushButton", "gridLayout_8", at(0, 0), "Learn Start"},
    {"frame_6", "QFrame", "gridLayout_3", at(2, 0)},
    {"learnCCR", "QPushButton", "horizontalLayout_2", at(0, 0), "Learn Move"},
    {"learnUpR", "QPushButton", "horizontalLayout_2", at(0, 1), "Learn Up"},
    {"learnDownR", "QPushButton", "horizontalLayout_2", at(0, 2), "Learn Down"},
    {"frame_8", "QFrame", "gridLayout_10", at(2, 0)},
    {"label", "QLabel", "gridLayout_12", at(0, 0), "Sensitivity"},
    {"sensRSlider", "QSlider", "gridLayout_12", at(0, 1)},
    {"bitsRCheck", "QCheckBox", "gridLayout_12", at(0, 2), "14 bits"},
    {"statusLabel", "QLabel", "gridLayout_4", at(1, 1), "Status"},
};

/// The grid of each container.
const std::initializer_list<std::pair<const char *, const char *>> grids = {
    {"centralwidget", "gridLayout_4"},
    {"genGroupBox", "gridLayout_2"},
    {"frame_9", "gridLayout_13"},
    {"groupBox_2", "gridLayout"},
    {"frame", "gridLayout_5"},
    {"frame_2", "gridLayout_7"},
    {"frame_5", "gridLayout_9"},
    {"frame_7", "gridLayout_11"},
    {"groupBox", "gridLayout_3"},
    {"frame_3", "gridLayout_6"},
    {"frame_4", "gridLayout_8"},
    {"frame_6", "gridLayout_10"},
    {"frame_8", "gridLayout_12"},
};

/// Translates every text to its context.
class ContextTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *sourceText, const char * /*hint*/,
        int /*n*/) const override
    {
        return QString::fromLatin1(context) + u": "_s + QString::fromLatin1(sourceText);
    }
    bool isEmpty() const override { return false; }
};

} // namespace

/// The positions of the form's widgets, before the running window changes anything.
class tst_Layout : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void every_widget_is_in_its_cell_data();
    void every_widget_is_in_its_cell();
    void every_widget_shows_its_text_data();
    void every_widget_shows_its_text();
    void every_text_can_be_translated();
    void the_form_has_no_other_widgets();
    void every_container_has_its_grid_data();
    void every_container_has_its_grid();
    void the_spacers_are_in_their_cells_data();
    void the_spacers_are_in_their_cells();
    void the_other_cells_are_empty_data();
    void the_other_cells_are_empty();

private:
    template <class T = QWidget>
    T *find(const char *name) const
    {
        return m_window->findChild<T *>(QString::fromLatin1(name));
    }

    std::unique_ptr<QMainWindow> m_window;
    Ui::MainWindow m_form = {};
};

void tst_Layout::init()
{
    m_window = std::make_unique<QMainWindow>();
    m_form.setupUi(m_window.get());
}

void tst_Layout::cleanup()
{
    m_window.reset();
}

void tst_Layout::every_widget_is_in_its_cell_data()
{
    QTest::addColumn<Place>("place");
    for (const Place &place : places)
        QTest::addRow("%s", place.name) << place;
}

void tst_Layout::every_widget_is_in_its_cell()
{
    QFETCH(Place, place);
    auto *widget = find(place.name);
    QVERIFY(widget);
    QCOMPARE(widget->metaObject()->className(), place.className);
    const auto *layout = find<QLayout>(place.layout);
    QVERIFY(layout);
    QCOMPARE(widget->parentWidget(), layout->parentWidget());
    const int index = layout->indexOf(widget);
    QVERIFY(index >= 0);
    QRect cell = at(0, index);
    if (const auto *grid = qobject_cast<const QGridLayout *>(layout)) {
        int row = 0;
        int column = 0;
        int rowSpan = 0;
        int columnSpan = 0;
        grid->getItemPosition(index, &row, &column, &rowSpan, &columnSpan);
        cell = at(row, column, rowSpan, columnSpan);
    }
    QCOMPARE(cell, place.cell);
}

void tst_Layout::every_widget_shows_its_text_data()
{
    every_widget_is_in_its_cell_data();
}

void tst_Layout::every_widget_shows_its_text()
{
    QFETCH(Place, place);
    const QWidget *widget = find(place.name);
    QVERIFY(widget);
    if (const auto *list = qobject_cast<const QComboBox *>(widget)) {
        QCOMPARE(list->count(), 1);
        QCOMPARE(list->currentText(), QString::fromLatin1(place.text));
        return;
    }
    const bool isGroup = qobject_cast<const QGroupBox *>(widget);
    const QVariant text = widget->property(isGroup ? "title" : "text");
    QCOMPARE(text.isValid(), place.text != nullptr);
    QCOMPARE(text.toString(), QString::fromLatin1(place.text));
}

void tst_Layout::every_text_can_be_translated()
{
    ContextTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    m_form.retranslateUi(m_window.get());
    const QString title = m_window->windowTitle();
    const QString enable = m_form.enableButton->text();
    const QString zone = m_form.zoneComboBox->itemText(0);
    const QString left = m_form.groupBox_2->title();
    const QString general = m_form.genGroupBox->title();
    QStringList untranslated;
    for (const Place &place : places) {
        const QString text = find(place.name)->property("text").toString();
        if (!text.isEmpty() && !text.startsWith("MainWindow: "_L1))
            untranslated.append(text);
    }
    QVERIFY(QCoreApplication::removeTranslator(&translator));
    QCOMPARE(title, u"MainWindow: Laser Rallyvane - by Vellaro"_s);
    QCOMPARE(enable, u"MainWindow: Enable Laser Output"_s);
    QCOMPARE(zone, u"MainWindow: Select laser zone"_s);
    QCOMPARE(left, u"MainWindow: Left controller"_s);
    QCOMPARE(general, QString());
    QCOMPARE(untranslated, QStringList());
}

void tst_Layout::the_form_has_no_other_widgets()
{
    QStringList expected = {u"centralwidget"_s, u"menubar"_s, u"statusbar"_s};
    for (const Place &place : places)
        expected.append(QString::fromLatin1(place.name));
    QStringList found;
    for (const QWidget *widget : m_window->findChildren<QWidget *>()) {
        // Internal parts of Qt's own widgets.
        if (!widget->objectName().isEmpty() && !widget->objectName().startsWith("qt_"_L1))
            found.append(widget->objectName());
    }
    expected.sort();
    found.sort();
    QCOMPARE(found, expected);
}

void tst_Layout::every_container_has_its_grid_data()
{
    QTest::addColumn<QByteArray>("container");
    QTest::addColumn<QByteArray>("grid");
    for (const auto &[container, grid] : grids)
        QTest::addRow("%s", container) << QByteArray(container) << QByteArray(grid);
}

void tst_Layout::every_container_has_its_grid()
{
    QFETCH(QByteArray, container);
    QFETCH(QByteArray, grid);
    const QWidget *widget = find(container);
    QVERIFY(widget);
    QVERIFY(qobject_cast<const QGridLayout *>(widget->layout()));
    QCOMPARE(widget->layout()->objectName(), QString::fromLatin1(grid));
    if (qstrcmp(widget->metaObject()->className(), "QFrame") == 0) {
        const auto *frame = static_cast<const QFrame *>(widget);
        QCOMPARE(frame->frameShape(), QFrame::StyledPanel);
        QCOMPARE(frame->frameShadow(), QFrame::Raised);
    }
}

void tst_Layout::the_spacers_are_in_their_cells_data()
{
    QTest::addColumn<QByteArray>("layout");
    QTest::addColumn<int>("row");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSizePolicy::Policy>("vertical");
    QTest::addRow("below the zones")
        << QByteArray("gridLayout_2") << 3 << QSize(20, 15) << QSizePolicy::Fixed;
    QTest::addRow("above reset") << QByteArray("gridLayout_2") << 6 << QSize(20, 40)
                                 << QSizePolicy::Expanding;
    QTest::addRow("left") << QByteArray("gridLayout") << 3 << QSize(20, 40)
                          << QSizePolicy::Expanding;
    QTest::addRow("right") << QByteArray("gridLayout_3") << 3 << QSize(20, 40)
                           << QSizePolicy::Expanding;
}

void tst_Layout::the_spacers_are_in_their_cells()
{
    QFETCH(QByteArray, layout);
    QFETCH(int, row);
    QFETCH(QSize, size);
    QFETCH(QSizePolicy::Policy, vertical);
    const auto *grid = find<QGridLayout>(layout);
    QVERIFY(grid);
    QLayoutItem *item = grid->itemAtPosition(row, 0);
    QVERIFY(item);
    const QSpacerItem *spacer = item->spacerItem();
    QVERIFY(spacer);
    QCOMPARE(spacer->sizeHint(), size);
    QCOMPARE(spacer->sizePolicy(), QSizePolicy(QSizePolicy::Minimum, vertical));
}

void tst_Layout::the_other_cells_are_empty_data()
{
    QTest::addColumn<QByteArray>("layout");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("items");
    QTest::addRow("general group") << QByteArray("gridLayout_2") << 5 << 7;
    QTest::addRow("left move frame, second row") << QByteArray("gridLayout_9") << 1 << 2;
    QTest::addRow("left move frame, third row") << QByteArray("gridLayout_9") << 2 << 2;
    QTest::addRow("right move frame") << QByteArray("gridLayout_10") << 1 << 2;
}

void tst_Layout::the_other_cells_are_empty()
{
    QFETCH(QByteArray, layout);
    QFETCH(int, row);
    QFETCH(int, items);
    const auto *grid = find<QGridLayout>(layout);
    QVERIFY(grid);
    QCOMPARE(grid->count(), items);
    QVERIFY(!grid->itemAtPosition(row, 0));
}

QTEST_MAIN(tst_Layout)
#include "tst_layout.moc"
