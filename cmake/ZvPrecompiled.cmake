# zv_precompile(<target> <group>)
#
# Compiles the headers of a group once for all the targets that ask for it: the first of a group makes them, the others
# take what it made, and so have to be compiled with the same flags (-Winvalid-pch, an error here, says if not).
# Only headers of others stand in a group, so that a change of ours leaves it alone. A source still includes what it
# uses; of the floors below the screens and the servers `fuzz`, which has nothing precompiled, proves it a dozen at a
# time. <filesystem> and <iomanip> stay out: they bring std::quoted, which is then found beside our own `quoted`.
set(ZV_GROUP_standard <algorithm> <array> <charconv> <functional> <map> <memory> <optional> <set> <span> <string>
                      <string_view> <utility> <variant> <vector>)
set(ZV_GROUP_widgets ${ZV_GROUP_standard} <QApplication> <QComboBox> <QDialog> <QHeaderView> <QKeyEvent> <QLabel>
                     <QLineEdit> <QMainWindow> <QMessageBox> <QPainter> <QTableView> <QTimer> <QVBoxLayout>)
set(ZV_GROUP_tests ${ZV_GROUP_standard} <gmock/gmock.h> <gtest/gtest.h>)
set(ZV_GROUP_tests_widgets ${ZV_GROUP_tests} ${ZV_GROUP_widgets} <QTest>)

function(zv_precompile target group)
  if(NOT ZV_PRECOMPILED)
    return()
  endif()
  get_property(first GLOBAL PROPERTY ZV_PRECOMPILED_${group})
  if(first)
    target_precompile_headers(${target} REUSE_FROM ${first})
  else()
    set_property(GLOBAL PROPERTY ZV_PRECOMPILED_${group} ${target})
    target_precompile_headers(${target} PRIVATE ${ZV_GROUP_${group}})
  endif()
endfunction()
