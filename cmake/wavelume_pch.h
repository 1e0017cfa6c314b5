// The headers most translation units parse, precompiled once per target (WAVELUME_PCH). System
// headers only. Each Qt group is compiled in only where Qt's own QT_<module>_LIB definition says
// the target uses that module, so a library never reaches through this header further than it
// links.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <cstdint>
#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#ifdef QT_CORE_LIB
#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVector>
#endif

#ifdef QT_WIDGETS_LIB
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWidget>
#endif

#ifdef QT_TESTLIB_LIB
#include <QSignalSpy>
#include <QTest>
#endif
