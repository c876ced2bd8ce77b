// What the tool prints: tables, for people, as CSV or as JSON.
#pragma once

#include <string>
#include <vector>

enum OutputForm { FORM_TEXT, FORM_CSV, FORM_JSON };

struct Table {
  std::string name;  // of the list in JSON
  std::vector<std::string> columns;
  std::vector<std::vector<std::string>> rows;
};

std::string table_text(const Table& table);
// With a line of the columns' names.
std::string table_csv(const Table& table);
// An object: the table, and what is damaged.
std::string table_json(const Table& table, const std::vector<std::string>& damages);
