// Baseline for the host's start: a bare window with a tree and a table. bench_arranque runs it.
#include "FirstPaint.h"

#include <QMainWindow>
#include <QSplitter>
#include <QStandardItemModel>
#include <QTableView>
#include <QTreeWidget>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "bench_ventana is run by bench_arranque.\n";
        return 2;
    }
    QApplication application(argc, argv);
    QMainWindow window;
    QSplitter parts;
    QTreeWidget tree;
    for (int i = 0; i < 40; ++i)
        tree.addTopLevelItem(std::make_unique<QTreeWidgetItem>(QStringList(QString::number(i))).release());
    QStandardItemModel model(7, 1);
    QTableView table;
    table.setModel(&model);
    parts.addWidget(&tree);
    parts.addWidget(&table);
    window.setCentralWidget(&parts);
    window.resize(1000, 700);
    const zv::bench::FirstPaint paint(window, std::stoll(argv[1]));
    const int result = QApplication::exec();
    parts.setParent(nullptr);
    return result;
}
