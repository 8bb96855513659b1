#!/usr/bin/perl
# Prints the record numbers of a tag in the order in which the XBase module walks it: tag_order.pl FILE.cdx TAG TYPE
# TYPE is the letter of the key's type: C, N or D.
use strict;
use warnings;
use XBase::Index;

my ($file, $tag, $type) = @ARGV;
my $index = XBase::Index->new($file, tag => $tag, type => $type)
    or die "cannot open $tag in $file: " . XBase::Index->errstr . "\n";
$index->prepare_select;
while (my ($key, $record) = $index->fetch) {
    print "$record\n";
}
