#include "host/terminal/Content.h"

namespace vel {

void ContentSource::read(const CPUData& record, Content& content) {
  content.readings.read(record, running_.ofThisRefresh());
  if (panel_.exists()) {
    if (!content.processes) {
      content.processes.emplace();
    }
    content.processes->read(record, controls_.ranking());
  }
  readViews(content);
}

void ContentSource::readViews(Content& content) const {
  content.item.read(item_);
  content.graph = panel_.graph();
  content.alertRule = controls_.alertRule();
  content.hasGPUAlert = controls_.isGPUAlertOn();
}

}  // namespace vel
