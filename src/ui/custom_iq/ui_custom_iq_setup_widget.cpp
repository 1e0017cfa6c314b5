#include "ui/custom_iq/ui_custom_iq_setup_widget.h"

#include <QHeaderView>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "custom_iq/custom_iq.h"
#include "ui/custom_iq/ui_basic_box.h"
#include "ui/custom_iq/ui_data_source_box.h"
#include "ui/custom_iq/ui_filter_box.h"
#include "ui/custom_iq/ui_modulation_box.h"

namespace nal {
namespace {

QTreeWidgetItem& add_group(QTreeWidget& tree, const QString& title, const QString& name) {
  auto* group = new QTreeWidgetItem(&tree, QStringList{title});
  group->setData(0, Qt::UserRole, name);
  group->setFirstColumnSpanned(true);
  group->setFlags(Qt::ItemIsEnabled);
  QFont font = group->font(0);
  font.setBold(true);
  group->setFont(0, font);
  group->setExpanded(true);
  return *group;
}

// The name column fits the longest name of every row, hidden ones included, so that it does not
// jump when the modulator changes.
void fit_name_column(QTreeWidget& tree) {
  const QFontMetrics metrics(tree.font());
  int width = 0;
  for (QTreeWidgetItemIterator it(&tree); *it != nullptr; ++it) {
    if ((*it)->isFirstColumnSpanned()) {
      continue;
    }
    int depth = 1;
    for (const QTreeWidgetItem* parent = (*it)->parent(); parent != nullptr;
         parent = parent->parent()) {
      ++depth;
    }
    width = std::max(width, metrics.horizontalAdvance((*it)->text(0)) + depth * tree.indentation());
  }
  tree.setColumnWidth(0, width + metrics.averageCharWidth() * 2);
}

}  // namespace

ui_custom_iq_setup_widget_t::ui_custom_iq_setup_widget_t(custom_iq_t& engine, QWidget* parent)
    : QWidget(parent) {
  setObjectName(QStringLiteral("CustomIqSetupWidget"));
  _tree = new QTreeWidget(this);
  QTreeWidget* tree = _tree;
  tree->setObjectName(QStringLiteral("CustomIqSetupTree"));
  tree->setColumnCount(2);
  tree->setHeaderHidden(true);
  tree->setRootIsDecorated(true);
  tree->setSelectionMode(QAbstractItemView::NoSelection);
  tree->setFocusPolicy(Qt::NoFocus);
  tree->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  tree->header()->setStretchLastSection(true);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(tree);

  _boxes = {
      new ui_basic_box_t(engine, add_group(*tree, tr("Basic"), QStringLiteral("Basic")), this),
      new ui_data_source_box_t(
          engine, add_group(*tree, tr("Data Source"), QStringLiteral("DataSource")), this),
      new ui_modulation_box_t(
          engine, add_group(*tree, tr("Modulation"), QStringLiteral("Modulation")), this),
      new ui_filter_box_t(engine, add_group(*tree, tr("Filter"), QStringLiteral("Filter")), this),
  };
  for (ui_custom_iq_section_t* box : _boxes) {
    connect(box, &ui_custom_iq_section_t::sig_edited, this,
            &ui_custom_iq_setup_widget_t::refresh_from_engine);
  }
  for (const auto signal : {&custom_iq_t::sig_update_ui, &custom_iq_t::sig_update_constellation,
                            &custom_iq_t::sig_update_fsk_dev_table_data}) {
    connect(&engine, signal, this, &ui_custom_iq_setup_widget_t::refresh_from_engine);
  }
  refresh_from_engine();
}

void ui_custom_iq_setup_widget_t::showEvent(QShowEvent* event) {
  // Fonts and editor sizes are final once the style sheet has polished the tree.
  fit_name_column(*_tree);
  for (ui_custom_iq_section_t* box : _boxes) {
    box->fit_row_heights();
  }
  QWidget::showEvent(event);
}

void ui_custom_iq_setup_widget_t::refresh_from_engine() {
  for (ui_custom_iq_section_t* box : _boxes) {
    box->refresh_from_engine();
  }
}

}  // namespace nal
