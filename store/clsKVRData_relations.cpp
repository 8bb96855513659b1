// Relations: a walk over a master table under a query, with slave tables positioned by a key of the master's
// record. A slave without a record for the key is left on the next greater key, or behind its last record.

#include "store/clsKVRData.h"

namespace tallwick {

std::unique_ptr<const engine::Expression> clsKVRData::ParseFor(const OpenTable& table,
                                                               std::string_view text) const {
  std::vector<engine::FieldInfo> fields;
  const auto* record = reinterpret_cast<const char*>(engine::d4record(*table.data).data());
  for (const engine::Field4* field : table.fields) {
    fields.push_back({engine::f4name(*field), engine::f4type(*field), engine::f4len(*field),
                      engine::f4decimals(*field), static_cast<int>(engine::f4ptr(*field) - record)});
  }
  return engine::Expression::Parse(text, fields);
}

clsKVRData::Relation* clsKVRData::FindRelation(RelationHandle relation) {
  auto found = relations_.find(relation);
  return found == relations_.end() ? nullptr : &found->second;
}

RelationHandle clsKVRData::RelationInitialize(DataHandle master) {
  if (!Find(master)) return NotOpen(), 0;
  Relation relation;
  relation.master = master;
  relations_.emplace(next_relation_, std::move(relation));
  return next_relation_++;
}

int clsKVRData::RelationCreateSlave(RelationHandle relation, DataHandle slave, std::string_view expression,
                                    std::string_view tag) {
  Relation* found = FindRelation(relation);
  if (!found || !Find(slave)) return NotOpen();
  TagHandle slave_tag = GetTagPointer(slave, tag);
  if (slave_tag == 0) return Finish(engine::kErrorTagName);
  std::unique_ptr<const engine::Expression> key = ParseFor(*Find(found->master), expression);
  if (!key) return Finish(engine::kErrorExpression);
  found->slaves.push_back({slave, slave_tag, std::move(key)});
  return Finish(engine::kSuccess);
}

int clsKVRData::RelationQuerySet(RelationHandle relation, std::string_view expression) {
  Relation* found = FindRelation(relation);
  if (!found) return NotOpen();
  std::unique_ptr<const engine::Expression> query;
  if (!expression.empty()) {
    query = ParseFor(*Find(found->master), expression);
    if (!query || query->Type() != engine::ValueType::kLogical) return Finish(engine::kErrorExpression);
  }
  found->query = std::move(query);
  return Finish(engine::kSuccess);
}

int clsKVRData::RelationSort(RelationHandle relation, std::string_view tag) {
  Relation* found = FindRelation(relation);
  if (!found) return NotOpen();
  TagHandle order = tag.empty() ? 0 : GetTagPointer(found->master, tag);
  if (!tag.empty() && order == 0) return Finish(engine::kErrorTagName);
  found->order = order;
  return Finish(engine::kSuccess);
}

int clsKVRData::RelationTop(RelationHandle relation) {
  Relation* found = FindRelation(relation);
  if (!found) return NotOpen();
  SelectTagByPointer(found->master, found->order);
  return RelationSettle(*found, TopDatabase(found->master));
}

int clsKVRData::RelationSkip(RelationHandle relation) {
  Relation* found = FindRelation(relation);
  return found ? RelationSettle(*found, SkipDatabase(found->master)) : NotOpen();
}

int clsKVRData::RelationSettle(Relation& relation, int code) {
  const OpenTable& master = *Find(relation.master);
  auto taken = [&] {
    return !relation.query || relation.query->EvaluateLogical(engine::d4record(*master.data).data(),
                                                              engine::d4recNoLow(*master.data));
  };
  while (code == engine::kSuccess && !taken()) code = SkipDatabase(relation.master);
  if (code != engine::kSuccess) return code;
  for (const RelationSlave& slave : relation.slaves) {
    OpenTable* table = Find(slave.data);
    if (!table) continue;
    std::string key =
        slave.key->EvaluateText(engine::d4record(*master.data).data(), engine::d4recNoLow(*master.data));
    engine::d4tagSelect(*table->data, FindTag4(slave.data, slave.tag));
    engine::d4seek(*table->data, key);
  }
  return Moved(master, engine::kSuccess);
}

void clsKVRData::RelationFree(RelationHandle relation) {
  relations_.erase(relation);
}

}  // namespace tallwick
